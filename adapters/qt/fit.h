// Whether everything in a window has the room it needs.
#pragma once

#include <QWidget>
#include <string>

namespace tpv::qt {

// The first thing of the shown window that is cut, lies over another, leaves its
// window or has to be scrolled to, and what is wrong with it; "" when all is well.
std::string Misfit(const QWidget& window);

}  // namespace tpv::qt
