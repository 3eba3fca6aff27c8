#include "adapters/qt/filter_box.h"

#include <QEvent>
#include <QLabel>
#include <QTableView>
#include <QVBoxLayout>

#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {
constexpr int kLong = 30;  // rows
}

FilterBox::FilterBox(QTableView& table, QWidget& parent, std::function<void()> clicked)
    : QWidget(&parent), table_(table), words_(new QLabel(this)), clicked_(std::move(clicked)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  words_->setFont(Type(kLabelSize));
  words_->setFrameShape(QFrame::StyledPanel);
  words_->setTextFormat(Qt::PlainText);
  words_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  words_->hide();
  words_->installEventFilter(this);
  layout->addWidget(words_);
  layout->addWidget(&table, 1);
  setSizePolicy(table.sizePolicy());
}

void FilterBox::Show(const ui::List& list) {
  long_ = list.Narrows() && list.RowCount() > kLong;
  narrowed_ = !list.filter.empty();
  ShowWords();
  if (!long_ && !narrowed_) return;
  const std::string count = std::to_string(list.ShownCount()) + " de " + std::to_string(list.RowCount());
  const QString now = list.filter.empty() ? QString("Escriba en la lista para filtrarla")
                                          : Text("Filtro: " + list.filter + "    (" + count + ", Esc lo quita)");
  if (words_->text() != now) words_->setText(now);
}

QSize FilterBox::minimumSizeHint() const {
  return {table_.minimumSizeHint().width(), table_.minimumHeight()};
}

void FilterBox::ShowWords() {
  const int need = table_.minimumHeight() + words_->sizeHint().height() + layout()->spacing();
  const bool shown = narrowed_ || (long_ && height() >= need);
  if (words_->isHidden() == shown) words_->setVisible(shown);
}

bool FilterBox::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress) clicked_();
  return false;
}

}  // namespace tpv::qt
