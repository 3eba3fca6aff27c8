#include "office/import/heading.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::office {

Heading::Heading(const TableRow& row, std::span<const std::string> known, Refusals& refusals) {
  for (const std::string& cell : row.cells) {
    const std::string name = ReplaceAll(Trim(FoldForSearch(cell)), " ", "_");
    if (std::find(known.begin(), known.end(), name) == known.end()) {
      std::string accepted;
      for (const std::string& one : known) accepted += (accepted.empty() ? "" : ", ") + one;
      refusals.push_back(
          {row.line, Left(cell, 40), "columna desconocida; se admiten: " + accepted});
    } else if (Has(name)) {
      refusals.push_back({row.line, name, "la columna está dos veces"});
    }
    names_.push_back(name);
  }
}

int Heading::IndexOf(const std::string& name) const {
  const auto found = std::find(names_.begin(), names_.end(), name);
  return found == names_.end() ? -1 : static_cast<int>(found - names_.begin());
}

const std::string& Heading::Cell(const TableRow& row, const std::string& name) const {
  static const std::string kNone;
  const int index = IndexOf(name);
  const bool there = index >= 0 && static_cast<std::size_t>(index) < row.cells.size();
  return there ? row.cells[static_cast<std::size_t>(index)] : kNone;
}

}  // namespace tpv::office
