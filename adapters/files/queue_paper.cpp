#include "adapters/files/queue_paper.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "base/text.h"

namespace tpv {

namespace {

constexpr double kWidestRoll = 12;  // centimetres
constexpr double kSameWidth = 0.3;

struct Size {
  double width;
  double length;
};

// "227" or "80.5" at the position, which moves behind it; 0 when it is no number.
double NumberAt(const std::string& name, std::size_t& at) {
  const std::size_t end = std::min(name.find_first_not_of("0123456789.", at), name.size());
  const double number = std::strtod(name.substr(at, end - at).c_str(), nullptr);
  at = end;
  return number;
}

// In centimetres, from names like RP80x297, X80MMY200MM, 80x200mm, w227h567 (points) or
// iso_a4_210x297mm: the last two numbers with something between them that joins two.
std::optional<Size> SizeIn(const std::string& name) {
  std::optional<Size> found;
  for (std::size_t at = 0; (at = name.find_first_of("0123456789", at)) != std::string::npos;) {
    const char before = at == 0 ? ' ' : name[at - 1];
    const double width = NumberAt(name, at);
    const std::size_t second = std::min(name.find_first_of("0123456789", at), name.size());
    const std::string between = FoldCase(name.substr(at, second - at));
    const bool joined = between == "x" || between == "h" || between == "mmy" || between == "mmx";
    if (!joined || second == name.size()) continue;
    std::size_t behind = second;
    const double length = NumberAt(name, behind);
    const bool points = between == "h" && (before == 'w' || before == 'W');
    const double unit = points ? 2.54 / 72 : name.compare(behind, 2, "in") == 0 ? 2.54 : 0.1;
    found = Size{width * unit, length * unit};
  }
  return found;
}

}  // namespace

QueuePaper ReadQueuePaper(std::string_view options) {
  QueuePaper paper;
  std::vector<std::string> names;
  for (const std::string& line : Split(options, "\n")) {
    if (line.starts_with("PageSize")) names = Split(line.substr(line.find(':') + 1), " ");
  }
  for (std::string& name : names) {
    if (!name.starts_with('*')) continue;
    name.erase(0, 1);
    const auto usual = SizeIn(name);
    if (usual && usual->width < kWidestRoll) paper.roll_width = usual->width;
  }
  for (const std::string& name : names) {
    if (name.starts_with("Custom.")) paper.any_length = true;
    const auto size = SizeIn(name);
    if (!size || std::abs(size->width - paper.roll_width) > kSameWidth) continue;
    paper.sizes.push_back({name, size->length});
  }
  std::sort(paper.sizes.begin(), paper.sizes.end(),
            [](const RollSize& a, const RollSize& b) { return a.length < b.length; });
  return paper;
}

}  // namespace tpv
