#include "adapters/qt/search_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include "adapters/qt/cell_delegate.h"
#include "adapters/qt/keys.h"
#include "adapters/qt/table_setup.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"
#include "screen/engine_lists.h"
#include "screen/list_document.h"

namespace tpv::qt {

namespace {

constexpr int kSampleRows = 60;
constexpr int kNarrowest = 760;
constexpr int kWidest = 1100;

}  // namespace

SearchModel::SearchModel(ui::SearchRequest& request, QObject* parent)
    : QAbstractTableModel(parent), list_(request), shown_(static_cast<int>(list_.Visible().size())) {}

void SearchModel::ReadOn() {
  constexpr int kMoment = 8;  // milliseconds: no key waits longer
  QElapsedTimer since;
  since.start();
  while (list_.ReadOn() && since.elapsed() < kMoment) {
  }
  Shows();
}

void SearchModel::ReadAll() {
  list_.ReadAll();
  Shows();
}

// New rows stand behind those that were there.
void SearchModel::Shows() {
  const int now = static_cast<int>(list_.Visible().size());
  if (now == shown_) return;
  beginInsertRows({}, shown_, now - 1);
  shown_ = now;
  endInsertRows();
}

void SearchModel::Narrow(const QString& text) {
  beginResetModel();
  list_.Narrow(Utf8(text));
  shown_ = static_cast<int>(list_.Visible().size());
  endResetModel();
}

void SearchModel::SortBy(int column) {
  ReadAll();
  beginResetModel();
  list_.SortBy(static_cast<std::size_t>(column));
  endResetModel();
}

int SearchModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : shown_; }

int SearchModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(list_.request().shown_columns.size());
}

QVariant SearchModel::data(const QModelIndex& index, int role) const {
  const auto column = static_cast<std::size_t>(index.column());
  if (role == Qt::TextAlignmentRole && list_.request().IsFigure(column)) {
    return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
  }
  if (role != Qt::DisplayRole) return {};
  return Text(list_.Cell(list_.Visible()[static_cast<std::size_t>(index.row())], column));
}

QVariant SearchModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  const auto& captions = list_.request().captions;
  const bool named = section < static_cast<int>(captions.size());
  return named ? Text(captions[section]) : QString();
}

SearchDialog::SearchDialog(ui::SearchRequest& request, ui::Engine& engine, WindowMemory& memory,
                           QWidget* parent)
    : QDialog(parent, Qt::Dialog),
      engine_(engine),
      memory_(memory),
      model_(new SearchModel(request, this)),
      edit_(new QLineEdit(this)),
      table_(new TillTable(this)),
      count_(new QLabel(this)),
      reading_(new QTimer(this)) {
  setWindowModality(Qt::ApplicationModal);
  setWindowTitle(Text(ui::Form::Titled(engine.banner(), request.title.empty() ? "Buscar" : request.title)));
  LayOut(request);
  connect(edit_, &QLineEdit::textChanged, this, [this](const QString& text) { Narrow(text); });
  connect(table_, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { Choose(index.row()); });
  table_->horizontalHeader()->setSectionsClickable(true);
  connect(table_->horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) { SortBy(column); });
  table_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(table_, &QWidget::customContextMenuRequested, this, [this] { OpenMenu(); });
  edit_->installEventFilter(this);
  edit_->setFocus();
  MoveTo(0);
  connect(reading_, &QTimer::timeout, this, [this] { ReadOn(); });
  if (!model_->list().HasAll()) reading_->start();
}

SearchDialog::~SearchDialog() {
  const std::vector<int> widths = Widths();
  if (widths != opened_widths_) memory_.Keep("busqueda." + model_->list().request().title, widths);
}

std::vector<int> SearchDialog::Widths() const {
  std::vector<int> widths;
  for (int column = 0; column < model_->columnCount(); ++column) {
    const bool stretched = table_->horizontalHeader()->sectionResizeMode(column) == QHeaderView::Stretch;
    widths.push_back(stretched ? 1 : std::max(1, table_->columnWidth(column)));
  }
  return widths;
}

// What goes wrong passes the window system by, which knows no errors.
bool SearchDialog::Reads(void (SearchModel::*read)()) {
  try {
    (model_->*read)();
  } catch (const std::exception&) {
    failure_ = std::current_exception();
    reject();
  }
  if (failure_ || model_->list().HasAll()) reading_->stop();
  ShowCount();
  return !failure_;
}

bool SearchDialog::ReadAll() { return Reads(&SearchModel::ReadAll); }

void SearchDialog::ReadOn() {
  const bool empty = model_->rowCount() == 0;
  if (Reads(&SearchModel::ReadOn) && empty) MoveTo(0);
}

void SearchDialog::RequireRead() const {
  if (failure_) std::rethrow_exception(failure_);
}

void SearchDialog::OpenMenu() {
  if (menu_ != nullptr) menu_->deleteLater();
  menu_ = new QMenu(this);
  offered_ = std::make_unique<ui::SearchedForm>(model_->list(), engine_.Top());
  for (const ui::MenuEntry& entry : ui::ListMenu(offered_->found, [this](int column) { SortBy(column); })) {
    QAction* action = menu_->addAction(Text(entry.caption));
    action->setObjectName(Text(entry.name));
    const bool sorts = entry.name.starts_with("mnuOrden");
    connect(action, &QAction::triggered, this, [this, sorts, click = entry.click] {
      sorts ? click() : Leave([click](ui::SearchedForm&) { click(); });
    });
  }
  menu_->popup(edit_->mapToGlobal(QPoint(0, edit_->height())));
}

void SearchDialog::Leave(std::function<void(ui::SearchedForm&)> errand) {
  errand_ = std::move(errand);
  closed_ = true;
  hide();
}

bool SearchDialog::RunErrand() {
  if (!errand_ || !ReadAll()) return false;
  ui::SearchedForm form(model_->list(), engine_.Top());
  std::exchange(errand_, nullptr)(form);
  closed_ = false;
  return true;
}

void SearchDialog::LayOut(const ui::SearchRequest& request) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(16, 16, 16, 14);
  layout->setSpacing(10);
  edit_->setMinimumHeight(38);
  edit_->setTextMargins(6, 0, 6, 0);
  edit_->setPlaceholderText("Palabras del nombre en cualquier orden, o parte del código");
  table_->setAlternatingRowColors(true);
  table_->setItemDelegate(new CellDelegate(*table_, *edit_));
  table_->setModel(model_);
  SetWidths(request);
  count_->setFont(Type(kLabelSize));
  layout->addWidget(edit_);
  layout->addWidget(table_, 1);
  layout->addWidget(count_);
}

void SearchDialog::SetWidths(const ui::SearchRequest& request) {
  const QFontMetrics cells(table_->font());
  const QFontMetrics header(table_->horizontalHeader()->font());
  int all = 0;
  int widest = 0;
  for (int column = 0; column < model_->columnCount(); ++column) {
    const QString caption = model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    int width = header.horizontalAdvance(caption);
    for (int row = 0; row < std::min(model_->rowCount(), kSampleRows); ++row) {
      const QString text = model_->index(row, column).data().toString();
      width = std::max(width, cells.horizontalAdvance(text));
    }
    const bool declared = column < static_cast<int>(request.widths.size());
    const int wanted = declared ? qRound(request.widths[column] * kPixelsInTwip) : 0;
    width = std::min(std::max(width + kCellPadding, std::min(wanted, width * 2)), kNarrowest);
    table_->setColumnWidth(column, width);
    if (width > table_->columnWidth(widest)) widest = column;
    all += width;
  }
  // The names take what room there is, more or less than they asked for.
  table_->horizontalHeader()->setSectionResizeMode(widest, QHeaderView::Stretch);
  const std::vector<int> own = memory_.ColumnsOf("busqueda." + request.title);
  for (int column = 0; own.size() == static_cast<std::size_t>(model_->columnCount()) && column < model_->columnCount(); ++column) {
    if (column != widest) table_->setColumnWidth(column, std::min(own[static_cast<std::size_t>(column)], kNarrowest));
  }
  opened_widths_ = Widths();
  resize(std::clamp(all + 60, kNarrowest, kWidest), 560);
}

void SearchDialog::Narrow(const QString& text) {
  model_->Narrow(text);
  MoveTo(0);
}

void SearchDialog::SortBy(int column) {
  if (!ReadAll()) return;
  model_->SortBy(column);
  const ui::SearchList& list = model_->list();
  table_->horizontalHeader()->setSortIndicatorShown(list.sorted_by().has_value());
  if (list.sorted_by()) {
    table_->horizontalHeader()->setSortIndicator(
        static_cast<int>(*list.sorted_by()), list.descending() ? Qt::DescendingOrder : Qt::AscendingOrder);
  }
  MoveTo(0);
}

void SearchDialog::MoveTo(int row) {
  const int rows = model_->rowCount();
  ShowCount();
  if (rows == 0) return;
  const QModelIndex index = model_->index(std::clamp(row, 0, rows - 1), 0);
  table_->setCurrentIndex(index);
  table_->scrollTo(index);
}

void SearchDialog::ShowCount() {
  count_->setText(Text(model_->list().CountText()) + "    ↑↓ elegir    Enter aceptar    Esc cerrar    Mayús+F10 más");
}

bool SearchDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched != edit_ || event->type() != QEvent::KeyPress) return false;
  const auto& key = static_cast<QKeyEvent&>(*event);
  if (key.matches(QKeySequence::Copy) && !edit_->hasSelectedText()) {
    if (!ReadAll()) return true;
    ui::SearchedForm form(model_->list(), nullptr);
    form.Fill();
    QApplication::clipboard()->setText(Text(ClipboardText(form.found)));
    return true;
  }
  if (key.key() == Qt::Key_Menu || (key.key() == Qt::Key_F10 && key.modifiers() == Qt::ShiftModifier)) {
    OpenMenu();
    return true;
  }
  return TakeScanned(key) || Key(key.key());
}

// True for a scanner's line end. The one row that holds its code is meant; among
// several the operator chooses.
bool SearchDialog::TakeScanned(const QKeyEvent& event) {
  ui::ScanBurst& burst = engine_.Burst();
  const ui::KeyMoment when = MomentOf(event);
  if (event.key() != Qt::Key_Return && event.key() != Qt::Key_Enter) {
    const auto typed = event.text().toUcs4();
    if (!typed.isEmpty()) burst.Begins(typed.front(), when);
    return false;
  }
  if (burst.Trails(when)) return true;
  if (!burst.LineEnd(when)) return false;
  if (!ReadAll()) return true;
  by_key_ = model_->rowCount() == 1;
  by_key_ ? Choose(0) : engine_.ScanUnanswered();
  return true;
}

// The list's keys while the search box has the focus.
bool SearchDialog::Key(int key) {
  const int row = table_->currentIndex().row();
  const int page = std::max(1, table_->viewport()->height() / kRowHeight - 1);
  switch (key) {
    case Qt::Key_Up:
      MoveTo(row - 1);
      return true;
    case Qt::Key_Down:
      MoveTo(row + 1);
      return true;
    case Qt::Key_PageUp:
      MoveTo(row - page);
      return true;
    case Qt::Key_PageDown:
      MoveTo(row + page);
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      by_key_ = true;
      Choose(row);
      return true;
    default:
      return false;
  }
}

void SearchDialog::Choose(int row) {
  if (row < 0 || row >= model_->rowCount()) return;
  chosen_ = model_->list().Visible()[static_cast<std::size_t>(row)];
  closed_ = true;
  hide();
}

void SearchDialog::reject() {
  closed_ = true;
  hide();
}

}  // namespace tpv::qt
