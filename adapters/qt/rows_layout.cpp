#include "adapters/qt/rows_layout.h"

#include <QWidget>
#include <algorithm>
#include <numeric>

namespace tpv::qt {

namespace {

constexpr int kRowGap = 6;
constexpr int kCellGap = 10;
constexpr std::size_t kToolbar = 4;  // as many buttons alone in a row share it evenly

const RowsLayout* Inside(const QLayoutItem& item) {
  const QWidget* widget = const_cast<QLayoutItem&>(item).widget();
  return widget == nullptr ? nullptr : dynamic_cast<const RowsLayout*>(widget->layout());
}

}  // namespace

RowsLayout::RowsLayout(QWidget& parent) : QLayout(&parent) {}

void RowsLayout::Add(QWidget& widget, Kind kind) {
  addChildWidget(&widget);
  addItem(new QWidgetItem(&widget));
  rows_.back().push_back({items_.back().get(), kind, 0});
}

void RowsLayout::addItem(QLayoutItem* item) { items_.emplace_back(item); }

QLayoutItem* RowsLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* RowsLayout::takeAt(int index) {
  if (itemAt(index) == nullptr) return nullptr;
  QLayoutItem* item = items_[static_cast<std::size_t>(index)].release();
  items_.erase(items_.begin() + index);
  for (Row& row : rows_) {
    std::erase_if(row, [&](const Cell& cell) { return cell.item == item; });
  }
  invalidate();
  return item;
}

void RowsLayout::invalidate() {
  shown_.clear();
  lines_width_ = unbroken_width_ = -1;
  size_hint_ = QSize();
  QLayout::invalidate();
}

const std::vector<RowsLayout::Row>& RowsLayout::Shown() const {
  if (!shown_.empty()) return shown_;
  for (const Row& row : rows_) {
    Row& shown = shown_.emplace_back();
    for (Cell cell : row) {
      if (cell.item->isEmpty()) continue;
      const RowsLayout* inside = Inside(*cell.item);
      cell.least = inside != nullptr ? inside->UnbrokenWidth() : cell.item->minimumSize().width();
      shown.push_back(cell);
    }
  }
  return shown_;
}

int RowsLayout::Unbroken(const Cell& cell) { return cell.least; }

int RowsLayout::Unbroken(const Row& row) {
  const int gaps = kCellGap * std::max(0, static_cast<int>(row.size()) - 1);
  return std::accumulate(row.begin(), row.end(), gaps,
                         [](int sum, const Cell& cell) { return sum + Unbroken(cell); });
}

// With all cells as wide as the widest.
int RowsLayout::Even(const Row& row) {
  int widest = 0;
  for (const Cell& cell : row) widest = std::max(widest, Unbroken(cell));
  return static_cast<int>(row.size()) * (widest + kCellGap) - kCellGap;
}

int RowsLayout::UnbrokenWidth() const {
  if (unbroken_width_ >= 0) return unbroken_width_;
  int width = 0;
  for (const Row& row : Shown()) width = std::max(width, Unbroken(row));
  const QMargins margins = contentsMargins();
  return unbroken_width_ = width + margins.left() + margins.right();
}

int RowsLayout::HeightOf(const Cell& cell, int width) {
  const RowsLayout* inside = Inside(*cell.item);
  if (inside != nullptr) return inside->LeastHeight(width);
  const int least = cell.item->minimumSize().height();
  if (cell.kind == Kind::Tall) return least;
  return cell.item->hasHeightForWidth() ? cell.item->heightForWidth(width)
                                        : std::max(least, cell.item->sizeHint().height());
}

bool RowsLayout::IsToolbar(const Row& row) {
  return row.size() >= kToolbar && std::all_of(row.begin(), row.end(), [](const Cell& cell) {
           return cell.kind == Kind::Button;
         });
}

// The row's lines. Buttons behind fields stay together; a toolbar's lines are even.
std::vector<RowsLayout::Row> RowsLayout::Broken(const Row& row, int width) {
  std::vector<Row> lines(1);
  const auto is_button = [](const Cell& cell) { return cell.kind == Kind::Button; };
  const bool toolbar = IsToolbar(row);
  for (auto at = row.begin(); at != row.end();) {
    auto end = toolbar || !is_button(*at) ? at + 1 : std::find_if_not(at, row.end(), is_button);
    Row together = lines.back();
    together.insert(together.end(), at, end);
    if (Unbroken(together) > width && !lines.back().empty()) {
      if (Unbroken(Row(at, end)) > width) end = at + 1;
      lines.emplace_back();
    }
    lines.back().insert(lines.back().end(), at, end);
    at = end;
  }
  if (!toolbar || lines.size() == 1) return lines;
  const std::size_t even = (row.size() + lines.size() - 1) / lines.size();
  lines.clear();
  for (std::size_t first = 0; first < row.size(); first += even) {
    const std::size_t end = std::min(row.size(), first + even);
    lines.emplace_back(row.begin() + static_cast<std::ptrdiff_t>(first),
                       row.begin() + static_cast<std::ptrdiff_t>(end));
  }
  return lines;
}

// A line of wide cells alone, none of which wishes for more than its even part.
bool RowsLayout::Evened(Line& line, int spare) {
  const int cells = static_cast<int>(line.cells.size());
  const int room = std::accumulate(line.widths.begin(), line.widths.end(), spare);
  for (int i = 0; i < cells; ++i) {
    if (line.cells[i].kind != Kind::Wide || line.widths[i] > room / cells) return false;
  }
  for (int i = 0; i < cells; ++i) line.widths[i] = room * (i + 1) / cells - room * i / cells;
  return true;
}

// Narrow cells get what they wish before wide ones, which take the rest.
void RowsLayout::Share(Line& line, int width, bool even) {
  const int gaps = kCellGap * (static_cast<int>(line.cells.size()) - 1);
  if (even) {
    const int cells = static_cast<int>(line.cells.size());
    for (int i = 0; i < cells; ++i) {
      line.widths.push_back((width - gaps) * (i + 1) / cells - (width - gaps) * i / cells);
    }
    return;
  }
  int spare = width - gaps;
  for (const Cell& cell : line.cells) {
    line.widths.push_back(std::min(Unbroken(cell), width));
    spare -= line.widths.back();
  }
  const auto is_wide = [](const Cell& cell) {
    return cell.kind == Kind::Wide || cell.kind == Kind::Tall;
  };
  for (const bool wide : {false, true}) {
    for (std::size_t i = 0; i < line.cells.size(); ++i) {
      if (is_wide(line.cells[i]) != wide) continue;
      const int wish = line.cells[i].item->sizeHint().width() - line.widths[i];
      const int given = std::clamp(wish, 0, std::max(0, spare));
      line.widths[i] += given;
      spare -= given;
    }
  }
  if (Evened(line, spare)) return;
  const bool crowded = IsToolbar(line.cells);
  auto takers = crowded ? static_cast<std::ptrdiff_t>(line.cells.size())
                        : std::count_if(line.cells.begin(), line.cells.end(), is_wide);
  for (std::size_t i = 0; i < line.cells.size() && spare > 0; ++i) {
    if (!crowded && !is_wide(line.cells[i])) continue;
    const int given = spare / static_cast<int>(takers--);
    line.widths[i] += given;
    spare -= given;
  }
}

const std::vector<RowsLayout::Line>& RowsLayout::LinesFor(int width) const {
  if (width == lines_width_) return lines_;
  lines_width_ = width;
  lines_.clear();
  for (const Row& shown : Shown()) {
    if (shown.empty()) continue;
    for (Row& cells : Broken(shown, width)) {
      Line line{std::move(cells), {}, 0, false};
      Share(line, width, IsToolbar(shown) && Even(line.cells) <= width);
      for (std::size_t i = 0; i < line.cells.size(); ++i) {
        line.least_height = std::max(line.least_height, HeightOf(line.cells[i], line.widths[i]));
        line.tall = line.tall || line.cells[i].kind == Kind::Tall;
      }
      lines_.push_back(std::move(line));
    }
  }
  return lines_;
}

int RowsLayout::LeastHeight(int width) const {
  const QMargins margins = contentsMargins();
  const auto& lines = LinesFor(width - margins.left() - margins.right());
  int height = margins.top() + margins.bottom() +
               kRowGap * std::max(0, static_cast<int>(lines.size()) - 1);
  for (const Line& line : lines) height += line.least_height;
  return height;
}

QSize RowsLayout::sizeHint() const {
  if (size_hint_.isValid()) return size_hint_;
  int wish = 0;
  for (const Row& shown : Shown()) {
    int width = kCellGap * std::max(0, static_cast<int>(shown.size()) - 1);
    for (const Cell& cell : shown) width += std::max(Unbroken(cell), cell.item->sizeHint().width());
    wish = std::max(wish, width);
  }
  const QMargins margins = contentsMargins();
  wish += margins.left() + margins.right();
  return size_hint_ = {wish, LeastHeight(wish)};
}

// As narrow as the widest thing in it that cannot be broken; its height then
// depends on the width it gets.
QSize RowsLayout::minimumSize() const {
  int least = 0;
  for (const auto& item : items_) {
    if (!item->isEmpty()) least = std::max(least, item->minimumSize().width());
  }
  const QMargins margins = contentsMargins();
  return {least + margins.left() + margins.right(), 0};
}

void RowsLayout::Place(const Line& line, const QRect& rect) const {
  int x = rect.left();
  for (std::size_t i = 0; i < line.cells.size(); ++i) {
    const Cell& cell = line.cells[i];
    QRect place(x, rect.top(), line.widths[i], rect.height());
    // Fields of a line stand on its foot, frames and grids fill it.
    if (cell.kind != Kind::Tall && Inside(*cell.item) == nullptr) {
      place.setTop(rect.bottom() + 1 - HeightOf(cell, line.widths[i]));
    }
    cell.item->setGeometry(place);
    x += line.widths[i] + kCellGap;
  }
}

void RowsLayout::setGeometry(const QRect& rect) {
  QLayout::setGeometry(rect);
  const QRect inside = rect.marginsRemoved(contentsMargins());
  // Its own copy: a widget that is given its place may ask for the layout at another width.
  const std::vector<Line> lines = LinesFor(inside.width());
  int spare = std::max(0, rect.height() - LeastHeight(rect.width()));
  auto takers = std::count_if(lines.begin(), lines.end(), [](const Line& line) { return line.tall; });
  int y = inside.top();
  for (const Line& line : lines) {
    int height = line.least_height;
    if (line.tall) {
      const int given = spare / static_cast<int>(takers--);
      height += given;
      spare -= given;
    }
    Place(line, {inside.left(), y, inside.width(), height});
    y += height + kRowGap;
  }
}

}  // namespace tpv::qt
