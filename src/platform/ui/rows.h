// The rows of a list. Nobody changes them unseen: what is found for them, their order,
// is found anew when their revision is another.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tpv::ui {

template <typename Row>
class Rows {
 public:
  using value_type = Row;
  using const_iterator = typename std::vector<Row>::const_iterator;

  Rows() = default;
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;
  Rows& operator=(std::vector<Row> rows) {
    rows_ = std::move(rows);
    ++revision_;
    return *this;
  }

  // Grows with every change.
  std::uint64_t Revision() const { return revision_; }

  operator const std::vector<Row>&() const { return rows_; }
  bool empty() const { return rows_.empty(); }
  std::size_t size() const { return rows_.size(); }
  const_iterator begin() const { return rows_.begin(); }
  const_iterator end() const { return rows_.end(); }
  const Row& operator[](std::size_t row) const { return rows_[row]; }
  const Row& at(std::size_t row) const { return rows_.at(row); }  // throws std::out_of_range
  const Row& back() const { return rows_.back(); }

  void clear() { Change().clear(); }
  void push_back(Row row) { Change().push_back(std::move(row)); }
  void insert(const_iterator before, Row row) { Change().insert(before, std::move(row)); }
  void erase(const_iterator row) { Change().erase(row); }
  void resize(std::size_t count) { Change().resize(count); }
  // `change` is called with the row, which must be there.
  template <typename Action>
  void Alter(std::size_t row, Action change) {
    change(Change().at(row));
  }
  std::vector<Row> Take() { return std::exchange(Change(), {}); }

 private:
  std::vector<Row>& Change() {
    ++revision_;
    return rows_;
  }

  std::vector<Row> rows_;
  std::uint64_t revision_ = 0;
};

}  // namespace tpv::ui
