// Rows of values in little memory: a search may show a million. They are only added and
// looked at.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/variant.h"

namespace tpv::ui {

// Valid while its rows live.
class PackedRow {
 public:
  explicit PackedRow(const char* values) : values_(values) {}

  // The value as it was added. The row must have that column.
  Variant operator[](std::size_t column) const;
  // The text of that column where it is one, without copying it; null for anything else.
  std::optional<std::string_view> HeldText(std::size_t column) const;
  std::vector<Variant> Values() const;

 private:
  const char* At(std::size_t column) const;

  const char* values_;
};

class PackedRows {
 public:
  PackedRows() = default;
  PackedRows(const std::vector<std::vector<Variant>>& rows) {
    for (const auto& row : rows) push_back(row);
  }
  // A value that is an object is refused with ConversionError.
  void push_back(const std::vector<Variant>& row);
  std::size_t size() const { return places_.size(); }
  bool empty() const { return places_.empty(); }
  PackedRow operator[](std::size_t row) const { return PackedRow(blocks_[places_[row] / kBlock] + places_[row] % kBlock); }

 private:
  static constexpr std::uint32_t kBlock = 256 * 1024;  // bytes

  char* Room(std::size_t bytes);

  std::vector<std::unique_ptr<char[]>> owned_;
  std::vector<char*> blocks_;          // a row longer than a block lies over several
  std::vector<std::uint32_t> places_;  // of the rows: block and byte in it
  std::size_t used_ = kBlock;          // bytes of the last block
  std::string packed_;                 // the row that is being added
};

}  // namespace tpv::ui
