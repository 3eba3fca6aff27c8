#include "office/import/heading.h"

#include <algorithm>

#include "base/text.h"

namespace tpv::office {

namespace {
constexpr std::size_t kMostShown = 200;  // characters of a row's cells
}

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

std::string Heading::CellsBeside(const TableRow& row, const std::string& name) const {
  const int own = IndexOf(name);
  std::string text;
  for (int i = 0; i < static_cast<int>(row.cells.size()); ++i) {
    const std::string& cell = row.cells[static_cast<std::size_t>(i)];
    if (i != own && !cell.empty()) text += (text.empty() ? "" : " · ") + cell;
  }
  return Left(text, kMostShown);
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
