#include "platform/ui/lists.h"

#include <algorithm>
#include <stdexcept>

#include "base/mask.h"
#include "base/text.h"
#include "platform/database.h"
#include "platform/pulse.h"
#include "platform/ui/list_order.h"

namespace tpv::ui {

int List::RowAt(int place) const {
  if (place < 0 || place >= ShownCount()) return -1;
  const int row = !arranged_ ? place : places_[static_cast<std::size_t>(place)];
  return row < RowCount() ? row : -1;  // it may have gone since
}

int List::PlaceOf(int row) const {
  if (!arranged_) return row >= 0 && row < RowCount() ? row : -1;
  const auto found = std::find(places_.begin(), places_.end(), row);
  return found == places_.end() ? -1 : static_cast<int>(found - places_.begin());
}

void List::Arrange() {
  if (sorted_by < 0 && filter.empty()) {
    if (arranged_) ++arrangements_;
    arranged_.reset();
    return places_.clear();
  }
  Look look{Revision(), sorted_by, descending, filter, layout};
  if (arranged_ == look) return;
  places_ = OrderOf(*this);
  ++arrangements_;
  arranged_ = std::move(look);
}

void Grid::Bind(Recordset& rows_to_show, std::vector<GridColumn> columns_to_show) {
  Clear();
  layout = std::move(columns_to_show);
  const std::size_t count = rows_to_show.FieldCount();
  fields.clear();
  for (std::size_t i = 0; i < count; ++i) {
    fields.push_back(rows_to_show.FieldName(i));
    if (layout.size() <= i) layout.emplace_back().caption = fields.back();
  }
  rows = ReadAll(rows_to_show);
  current_row = rows.empty() ? -1 : 0;
}

// All of them, or none stays. The first are looked at while the others are read.
std::vector<std::vector<Variant>> Grid::ReadAll(Recordset& rows_to_show) {
  constexpr std::size_t kScreenful = 64;
  std::vector<std::vector<Variant>> read;
  try {
    for (; !rows_to_show.Eof(); rows_to_show.MoveNext()) {
      read.push_back(rows_to_show.Fields());
      if (read.size() % kScreenful != 0) continue;
      Pulse();
      if (!AreFirstRowsWanted()) continue;
      rows = std::vector(read.begin(), read.begin() + kScreenful);
      current_row = 0;
      ShowFirstRows();
    }
  } catch (...) {
    Clear();
    throw;
  }
  return read;
}

void Grid::BindAgain(Recordset& rows_to_show, std::vector<GridColumn> columns_to_show,
                     std::string_view key_field) {
  const auto keys = [&] {
    std::vector<std::int32_t> found;
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
      found.push_back(Value(row, key_field).IntOr(0));
    }
    return found;
  };
  const int row = current_row;
  const std::vector<std::int32_t> before = keys();
  Bind(rows_to_show, std::move(columns_to_show));
  current_row = PlaceAmong(before, row, keys());
}

int PlaceAmong(const std::vector<std::int32_t>& before, int row, const std::vector<std::int32_t>& now) {
  const int last = static_cast<int>(now.size()) - 1;
  if (now.size() == before.size() + 1) {
    const auto newest = std::find_if(now.begin(), now.end(), [&](std::int32_t key) {
      return std::find(before.begin(), before.end(), key) == before.end();
    });
    if (newest != now.end()) return static_cast<int>(newest - now.begin());
  }
  return std::clamp(row, std::min(0, last), last);
}

void Grid::Clear() {
  rows.clear();
  current_row = -1;
}

int Grid::Column(std::string_view field) const {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (EqualNoCase(fields[i], field)) return static_cast<int>(i);
  }
  throw std::out_of_range(name + ": " + std::string(field));
}

const Variant& Grid::Value(int row, std::string_view field) const {
  return rows.at(row).at(Column(field));
}

std::string Grid::Cell(int row, int column) const {
  const Variant* value = Content(row, column);
  return value == nullptr ? std::string() : Format(*value, layout.at(static_cast<std::size_t>(column)).mask);
}

const Variant* Grid::Content(int row, int column) const {
  if (row < 0 || row >= RowCount() || column < 0) return nullptr;
  const auto& cells = rows[static_cast<std::size_t>(row)];
  return static_cast<std::size_t>(column) < cells.size() ? &cells[static_cast<std::size_t>(column)] : nullptr;
}

bool Grid::IsDetail(int row) const {
  return !detail_field.empty() && Value(row, detail_field).IsNull();
}

std::string ListView::Cell(int row, int column) const {
  if (row < 0 || row >= RowCount() || column < 0) return {};
  const auto& cells = items[static_cast<std::size_t>(row)].cells;
  return static_cast<std::size_t>(column) < cells.size() ? cells[static_cast<std::size_t>(column)] : std::string();
}

}  // namespace tpv::ui
