// Grids and list views: rows to look at, to choose from, to sort and to take away.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/variant.h"
#include "platform/ui/control.h"
#include "platform/ui/rows.h"

namespace tpv {
class Recordset;
}

namespace tpv::ui {

struct GridColumn {
  std::string caption;
  std::string mask;
  int width = 0;  // twips; 0: the front end's choice
  Align align = Align::Left;
  bool hidden = false;
  bool cell_button = false;
  bool adds_up = false;  // its amounts make a sum worth printing

  bool operator==(const GridColumn&) const = default;
};

// Rows stay as their screen put them, and what it does with them is about these. How the
// operator looks at them, sorted and narrowed, is a matter of places: the row that
// stands first has place 0.
struct List : Control {
  using Control::Control;
  List* AsList() override { return this; }

  std::vector<GridColumn> layout;
  int current_row = -1;      // wherever it stands
  bool arrangeable = true;   // false: the order says something, nobody changes it
  bool narrowable = true;    // false: the screen narrows it itself

  // The operator's look; change it through the engine.
  int sorted_by = -1;        // a column; -1: as the screen put them
  bool descending = false;
  std::string filter;        // words that each shown row holds

  virtual int RowCount() const = 0;
  virtual std::uint64_t Revision() const = 0;  // another one with every change of the rows
  virtual std::string Cell(int row, int column) const = 0;  // as displayed; "" where there is none
  virtual const Variant* Content(int /*row*/, int /*column*/) const { return nullptr; }
  // A detail of the row above it: goes where that one goes.
  virtual bool IsDetail(int /*row*/) const { return false; }
  // Whether rows can be left out of sight: not where marks on them count.
  virtual bool Narrows() const { return arrangeable && narrowable; }

  bool CanFocus() const override { return true; }
  int ShownCount() const { return !arranged_ ? RowCount() : static_cast<int>(places_.size()); }
  int RowAt(int place) const;  // -1 for none
  int PlaceOf(int row) const;  // -1 for a row out of sight
  // Another one whenever a row may have changed or stand elsewhere.
  std::pair<std::uint64_t, std::uint64_t> Stamp() const { return {Revision(), arrangements_}; }
  // Finds the places of rows that may have changed.
  void Arrange();

 private:
  // What an order is found for.
  struct Look {
    std::uint64_t revision;
    int sorted_by;
    bool descending;
    std::string filter;
    std::vector<GridColumn> layout;
    bool operator==(const Look&) const = default;
  };

  std::vector<int> places_;
  std::optional<Look> arranged_;  // null: every row stands at its own place
  std::uint64_t arrangements_ = 0;
};

// A grid over the rows of a record set, read whole when bound.
struct Grid : List {
  using List::List;

  std::vector<std::string> fields;  // column names of the statement
  Rows<std::vector<Variant>> rows;
  bool read_only = false;
  std::string detail_field;  // null in rows that are details of the one above; "" for none
  std::function<void(int row, int column)> cell_button;

  // Takes all rows; missing layout columns show under the field's own name.
  void Bind(Recordset& rows_to_show, std::vector<GridColumn> columns_to_show);
  // The same list read again: keeps the operator's place in it (see PlaceAmong).
  void BindAgain(Recordset& rows_to_show, std::vector<GridColumn> columns_to_show,
                 std::string_view key_field);
  void Clear();
  int Column(std::string_view field) const;  // throws std::out_of_range for an unknown field
  const Variant& Value(int row, std::string_view field) const;

  int RowCount() const override { return static_cast<int>(rows.size()); }
  std::uint64_t Revision() const override { return rows.Revision(); }
  std::string Cell(int row, int column) const override;
  const Variant* Content(int row, int column) const override;
  bool IsDetail(int row) const override;

 private:
  std::vector<std::vector<Variant>> ReadAll(Recordset& rows_to_show);
};

// The current row of a list that was read again: a row that came in is marked;
// otherwise the mark stays where it was. Keys tell the rows; -1 when there are none.
int PlaceAmong(const std::vector<std::int32_t>& before, int row, const std::vector<std::int32_t>& now);

struct ListItem {
  std::vector<std::string> cells;  // first the item's text, then its sub-items
  bool checked = false;
  std::int32_t tag = 0;

  bool operator==(const ListItem&) const = default;
};

struct ListView : List {
  using List::List;

  bool check_boxes = false;
  Rows<ListItem> items;
  std::function<void(int row)> selected;
  std::function<void(int row)> checked;  // after the mark changed

  void Mark(std::size_t row, bool on) {
    items.Alter(row, [on](ListItem& item) { item.checked = on; });
  }

  int RowCount() const override { return static_cast<int>(items.size()); }
  std::uint64_t Revision() const override { return items.Revision(); }
  std::string Cell(int row, int column) const override;
  bool Narrows() const override { return !check_boxes && List::Narrows(); }
};

}  // namespace tpv::ui
