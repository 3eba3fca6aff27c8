#include "adapters/qt/progress_dialog.h"

#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "adapters/qt/keys.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {
constexpr int kParts = 1000;  // of the bar
constexpr int kWidth = 460;
}  // namespace

ProgressDialog::ProgressDialog(ui::Engine& engine, QWidget* parent)
    : QDialog(parent, Qt::Dialog),
      engine_(engine),
      stage_(new QLabel(this)),
      bar_(new QProgressBar(this)),
      button_(new QPushButton("&Cancelar", this)) {
  setWindowModality(Qt::ApplicationModal);
  stage_->setTextFormat(Qt::PlainText);
  stage_->setWordWrap(true);
  stage_->setMinimumWidth(kWidth);
  bar_->setTextVisible(false);
  button_->setMinimumSize(130, 44);
  button_->setAutoDefault(false);  // Enter, a scanner's too, does not press it
  connect(button_, &QPushButton::clicked, this, [this] { reject(); });
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 22, 24, 20);
  layout->setSpacing(18);
  layout->addWidget(stage_);
  layout->addWidget(bar_);
  layout->addWidget(button_, 0, Qt::AlignRight);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  setFocus();
}

void ProgressDialog::Show(const ui::Progress& progress) {
  setWindowTitle(Text(progress.title));
  stage_->setText(Text(progress.stage));
  bar_->setAccessibleName(Text(progress.stage));
  const bool known = progress.share >= 0;
  bar_->setRange(0, known ? kParts : 0);
  if (known) bar_->setValue(static_cast<int>(progress.share * kParts));
  button_->setEnabled(progress.can_be_given_up && !given_up_);
}

void ProgressDialog::reject() {
  if (button_->isEnabled()) given_up_ = true;
}

void ProgressDialog::keyPressEvent(QKeyEvent* event) {
  const ui::KeyMoment when = MomentOf(*event);
  const auto typed = event->text().toUcs4();
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    if (engine_.Burst().LineEnd(when)) engine_.ScanUnanswered();
  } else if (!typed.isEmpty() && QChar::isPrint(typed.front())) {
    engine_.Burst().Begins(typed.front(), when);
  } else {
    QDialog::keyPressEvent(event);
  }
}

}  // namespace tpv::qt
