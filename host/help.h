// The program's help: whole, and the part about one order.
#pragma once

#include <string>
#include <string_view>

namespace tpv {

// What `help` says about "store", "config"…: its lines and those set in below them,
// and the last paragraphs, which are about all orders. "" for an order that it does
// not know.
std::string HelpAbout(std::string_view help, std::string_view order);

}  // namespace tpv
