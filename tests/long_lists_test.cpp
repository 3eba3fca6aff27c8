// Lists too long to wait for: packed, searched while they are read, seen before they are read whole.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "adapters/headless/headless_front_end.h"
#include "platform/database.h"
#include "screen/search_list.h"

namespace tpv::ui {
namespace {

TEST(PackedRows, GiveBackWhatWasAdded) {
  const std::vector<Variant> kinds = {
      {}, true, false, std::int16_t{-3}, std::int32_t{3}, std::int64_t{3}, INT64_MIN, INT64_MAX, INT32_MIN,
      0.0, -0.0, -12.0, 0.1, 1e300, std::numeric_limits<double>::infinity(), Money{-1}, Money{INT64_MAX},
      DateTime{2026, 11, 24, 23, 59, 58, 999}, "", "Peña", std::string(243, 'a'), std::string(244, 'b'),
      std::string("con\0cero", 8)};
  PackedRows rows;
  std::vector<std::vector<Variant>> added;
  for (std::size_t i = 0; i < 30000; ++i) {
    std::vector<Variant> row(kinds.begin() + static_cast<std::ptrdiff_t>(i % kinds.size()), kinds.end());
    if (i % 1000 == 7) row.emplace_back(std::string(i * 40, 'x'));  // more than a block
    rows.push_back(row);
    added.push_back(std::move(row));
  }
  ASSERT_EQ(rows.size(), added.size());
  for (std::size_t i = 0; i < added.size(); ++i) ASSERT_EQ(rows[i].Values(), added[i]) << i;
  EXPECT_TRUE(std::signbit(rows[0][10].ToDouble()));
  EXPECT_EQ(rows[0][21], added[0][21]);
  EXPECT_EQ(rows[0].HeldText(19), "Peña");
  EXPECT_EQ(rows[0].HeldText(9), std::nullopt);
}

TEST(SearchListTest, FindsWhatIsReadLater) {
  SearchRequest request;
  request.shown_columns = {0, 1};
  request.masks = {"", "#,##0.00"};
  int read = 0;
  request.read_on = [&] {
    for (const char* name : {"Peña", "Pan"}) request.rows.push_back({Variant(name), Variant(read++)});
    return read < 6;
  };
  SearchList list(request);
  list.Narrow("pen");
  EXPECT_TRUE(list.Visible().empty());
  EXPECT_TRUE(list.ReadOn());
  EXPECT_EQ(list.CountText(), "1 de 2 coinciden, leyendo…");
  list.SortBy(1);
  list.SortBy(1);
  EXPECT_EQ(list.Visible(), (std::vector<std::uint32_t>{4, 2, 0}));
  EXPECT_EQ(list.CountText(), "3 de 6 coinciden");
}

// Sees what an operator would at the moment when the window system is let through.
class Watched : public HeadlessFrontEnd {
 public:
  std::function<void()> look;
  void ProcessEvents() override { look(); }
};

// Its first rows come slowly; behind the last one it fails if it is to.
class SlowRows : public Recordset {
 public:
  SlowRows(int rows, bool fails) : left_(rows), fails_(fails) {}
  bool Bof() const override { return false; }
  bool Eof() const override { return left_ == 0; }
  long RecordCount() const override { return -1; }
  std::size_t FieldCount() const override { return 1; }
  const std::string& FieldName(std::size_t) const override { return name_; }
  Variant Field(std::size_t) const override { return Variant(left_); }
  Variant Field(std::string_view) const override { return Variant(left_); }
  void MoveNext() override {
    if (++read_ <= 64) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    if (--left_ == 0 && fails_) throw DatabaseError("se cortó");
  }
  void Close() override { left_ = 0; }

 private:
  const std::string name_ = "Id";
  int left_;
  bool fails_;
  int read_ = 0;
};

TEST(GridTest, ShowsItsFirstRowsOnceWhileTheOthersAreReadAndNoneAfterAFailure) {
  Form form("frmPrueba");
  Grid grid(form, "DbgDiario");
  Watched front_end;
  std::vector<int> seen;
  front_end.look = [&] { seen.push_back(grid.RowCount()); };
  for (const bool fails : {false, true}) {
    LongWork work(front_end, "Diario");
    SlowRows rows(300, fails);
    if (fails) {
      EXPECT_THROW(grid.Bind(rows, {}), DatabaseError);
    } else {
      grid.Bind(rows, {});
    }
    EXPECT_EQ(grid.RowCount(), fails ? 0 : 300);
  }
  EXPECT_EQ(seen, (std::vector<int>{64, 64}));
}

}  // namespace
}  // namespace tpv::ui
