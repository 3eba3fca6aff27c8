// Lists in windows hold and paint what their rows say, whatever happened to them.
#include <QAbstractItemModelTester>
#include <QApplication>
#include <QPaintEvent>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>
#include <algorithm>
#include <random>

#include "adapters/qt/control_view.h"
#include "adapters/qt/text.h"
#include "tests/windows_till.h"

namespace tpv::qt {
namespace {

// What of a widget is painted while it lives.
class Painted : public QObject {
 public:
  explicit Painted(QWidget& widget) { widget.installEventFilter(this); }
  QRegion region;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent*>(event)->region();
    return false;
  }
};

class RowsTest : public WindowsTest {
 protected:
  int Any(int below) { return static_cast<int>(chance() % static_cast<unsigned>(std::max(below, 1))); }
  std::size_t AnyRow(const ui::List& list) { return static_cast<std::size_t>(Any(list.RowCount())); }
  std::vector<Variant> Row() { return {Variant(++made), Variant("Artículo " + std::to_string(Any(40)))}; }
  QTableView& TableOf(const ui::List& list) {
    return *static_cast<QTableView*>(windows.TopWindow()->ViewOf(list)->Target());
  }
  void Paint() {
    windows.Refresh();
    SettleWindows();
    QEvent update(QEvent::UpdateRequest);
    QCoreApplication::sendEvent(windows.TopWindow(), &update);
  }

  // What screens and operators do to the rows of a list.
  void ChangeGoods() {
    auto& rows = form.goods.rows;
    const bool some = !rows.empty();
    switch (Any(9)) {
      case 0: return rows.push_back(Row());
      case 1: return rows.insert(rows.begin() + Any(static_cast<int>(rows.size())), Row());
      case 2: return some ? rows.erase(rows.begin() + Any(static_cast<int>(rows.size()))) : void();
      case 3: return some ? rows.Alter(AnyRow(form.goods), [&](auto& row) { row[1] = Row()[1]; }) : void();
      case 4: {  // read again, some of it gone
        std::vector<std::vector<Variant>> kept = rows.Take();
        if (Any(3) == 0) std::shuffle(kept.begin(), kept.end(), chance);
        if (Any(6) == 0) kept.resize(static_cast<std::size_t>(Any(static_cast<int>(kept.size()))));
        if (Any(2) == 0) TableOf(form.goods).viewport()->grab();  // painted with nothing in it
        rows = std::move(kept);
        return;
      }
      case 5: return hands.Sort(form.goods, 1);
      case 6: return windows.Act([&](ui::Engine& engine) { engine.Narrow(form.goods, Any(2) == 0 ? "" : "3"); });
      case 7: return TableOf(form.goods).verticalScrollBar()->setValue(Any(300));
      default: form.goods.current_row = Any(form.goods.RowCount() + 1) - 1;
    }
  }
  void ChangeMarks() {
    if (Any(4) == 0) return form.marks.items.push_back({{"T/" + std::to_string(++made)}, false, made});
    if (form.marks.items.empty()) return;
    if (Any(6) == 0) return form.marks.items.erase(form.marks.items.begin() + Any(form.marks.RowCount()));
    form.marks.Mark(AnyRow(form.marks), Any(2) == 0);
  }

  void ExpectHeld(const ui::List& list) {
    const QTableView& table = TableOf(list);
    ASSERT_EQ(table.model()->rowCount(), list.ShownCount());
    for (int place = 0; place < list.ShownCount(); ++place) {
      const QModelIndex cell = table.model()->index(place, static_cast<int>(list.layout.size()) - 1);
      ASSERT_EQ(Utf8(cell.data().toString()), list.Cell(list.RowAt(place), cell.column()));
    }
    ASSERT_EQ(table.currentIndex().row(), list.PlaceOf(list.current_row));
  }
  // On the screen stands what painting all of it again would give.
  void ExpectPainted(const ui::List& list) {
    QWidget& rows = *TableOf(list).viewport();
    const QRect place({}, rows.size());
    const QPoint at = rows.mapTo(windows.TopWindow(), QPoint());
    const QImage seen = windows.TopWindow()->screen()->grabWindow(windows.TopWindow()->winId()).toImage();
    const QImage fresh = windows.TopWindow()->grab().toImage();
    ASSERT_FALSE(seen.isNull());
    const auto part = [&](const QImage& image) {
      return image.copy(QRect(at, place.size())).convertToFormat(QImage::Format_RGB32);
    };
    ASSERT_TRUE(part(seen) == part(fresh)) << list.name << " shows something stale";
  }

  std::mt19937 chance{20261124};
  int made = 1000;
};

TEST_F(RowsTest, WindowsShowWhatListsHoldWhateverHappensToTheirRows) {
  Play({[&] {
    form.goods.rows.resize(60);
    for (std::size_t row = 0; row < 60; ++row) form.goods.rows.Alter(row, [&](auto& cells) { cells = Row(); });
    const QAbstractItemModelTester goods(TableOf(form.goods).model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QAbstractItemModelTester marks(TableOf(form.marks).model(), QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int turn = 0; turn < 400; ++turn) {
      ChangeGoods();
      ChangeMarks();
      Paint();
      SCOPED_TRACE("turn " + std::to_string(turn));
      for (const ui::List* list : {static_cast<ui::List*>(&form.goods), static_cast<ui::List*>(&form.marks)}) {
        ExpectHeld(*list);
        ExpectPainted(*list);
      }
      if (HasFatalFailure()) return;
    }
  }});
}

TEST_F(RowsTest, OneRowChangedPaintsThisRowAloneAndAKeyElsewhereNone) {
  Play({[&] {
    QTableView& table = TableOf(form.goods);
    Paint();
    Painted painted(*table.viewport());
    SendText("1");
    Paint();
    EXPECT_EQ(form.price.text, "1");
    EXPECT_TRUE(painted.region.isEmpty());
    form.goods.rows.Alter(2, [](auto& row) { row[1] = Variant("Otro"); });
    Paint();
    EXPECT_EQ(painted.region.boundingRect(), QRect(0, table.rowViewportPosition(2), table.viewport()->width(), table.rowHeight(2)));
  }});
}

TEST_F(RowsTest, ThatAListHasTheFocusShowsInItsCurrentRow) {
  Play({[&] {
    form.goods.current_row = 1;
    form.marks.current_row = 1;
    for (ui::List* list : {static_cast<ui::List*>(&form.goods), static_cast<ui::List*>(&form.marks)}) {
      const QTableView& table = TableOf(*list);
      const auto row = [&](int at) {
        Paint();
        return table.viewport()->grab({0, table.rowViewportPosition(at), 4, table.rowHeight(at)}).toImage();
      };
      hands.Focus(form.price);
      const QImage without = row(1);
      EXPECT_NE(without, row(0)) << list->name << ": the current row is marked";
      hands.Focus(*list);
      EXPECT_NE(row(1), without) << list->name;
      EXPECT_NE(row(1), row(0)) << list->name;
    }
  }});
}

}  // namespace
}  // namespace tpv::qt
