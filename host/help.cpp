#include "host/help.h"

#include "base/text.h"

namespace tpv {

namespace {

constexpr std::string_view kOrder = "  tpv ";

bool IsAbout(std::string_view line, std::string_view order) {
  if (!line.starts_with(kOrder)) return false;
  line.remove_prefix(kOrder.size());
  return line.starts_with(order) && (line.size() == order.size() || line[order.size()] == ' ');
}

}  // namespace

std::string HelpAbout(std::string_view help, std::string_view order) {
  const std::size_t orders = help.find(kOrder);
  const std::size_t last = help.find("\n\n", orders);
  std::string about;
  bool within = false;
  for (const std::string& line : Split(help.substr(orders, last - orders), "\n")) {
    if (line.starts_with(kOrder)) within = !order.empty() && IsAbout(line, order);
    if (within) about += line + "\n";
  }
  return about.empty() ? about : about + std::string(help.substr(last + 1));
}

}  // namespace tpv
