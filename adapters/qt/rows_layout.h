// A form's declared rows, bent to the room there is: what does not fit beside its
// neighbours goes to a line below, wide fields give way before narrow ones, and
// grids take the height that is left.
#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace tpv::qt {

class RowsLayout : public QLayout {
 public:
  enum class Kind { Plain, Button, Wide, Tall };

  explicit RowsLayout(QWidget& parent);

  // What is added stands in the row begun last; its parent is the layout's.
  void BeginRow() { rows_.emplace_back(); }
  void Add(QWidget& widget, Kind kind);

  // The width at which no row has to be broken.
  int UnbrokenWidth() const;
  // What the rows need at least when they have this width.
  int LeastHeight(int width) const;

  QSize sizeHint() const override;
  QSize minimumSize() const override;
  bool hasHeightForWidth() const override { return true; }
  // The least, so that a window scrolls only where nothing can give way any more.
  int heightForWidth(int width) const override { return LeastHeight(width); }
  void setGeometry(const QRect& rect) override;
  void invalidate() override;
  Qt::Orientations expandingDirections() const override { return Qt::Horizontal | Qt::Vertical; }

  void addItem(QLayoutItem* item) override;
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;

 private:
  struct Cell {
    QLayoutItem* item;
    Kind kind;
    int least = 0;  // its width when its row is not broken
  };
  using Row = std::vector<Cell>;
  // Cells beside each other, their widths, and what their tallest needs.
  struct Line {
    Row cells;
    std::vector<int> widths;
    int least_height = 0;
    bool tall = false;
  };

  // Each row's cells that are seen, row by row.
  const std::vector<Row>& Shown() const;
  static int Unbroken(const Cell& cell);
  static int Unbroken(const Row& row);
  static int Even(const Row& row);
  static bool IsToolbar(const Row& row);
  static int HeightOf(const Cell& cell, int width);
  static std::vector<Row> Broken(const Row& row, int width);
  static bool Evened(Line& line, int spare);
  static void Share(Line& line, int width, bool even);
  const std::vector<Line>& LinesFor(int width) const;
  void Place(const Line& line, const QRect& rect) const;

  std::vector<std::unique_ptr<QLayoutItem>> items_;
  std::vector<Row> rows_;
  // Made once for as long as nothing in it changes.
  mutable std::vector<Row> shown_;
  mutable std::vector<Line> lines_;  // for `lines_width_`
  mutable int lines_width_ = -1;
  mutable int unbroken_width_ = -1;
  mutable QSize size_hint_;
};

}  // namespace tpv::qt
