#include "adapters/qt/message_dialog.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>

#include "adapters/qt/keys.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"
#include "platform/ui/controls.h"

namespace tpv::qt {

namespace {

constexpr int kIconSize = 48;
constexpr int kWidestText = 620;

std::optional<QStyle::StandardPixmap> PictureOf(ui::Icon icon) {
  switch (icon) {
    case ui::Icon::Information:
      return QStyle::SP_MessageBoxInformation;
    case ui::Icon::Question:
      return QStyle::SP_MessageBoxQuestion;
    case ui::Icon::Exclamation:
      return QStyle::SP_MessageBoxWarning;
    case ui::Icon::Critical:
      return QStyle::SP_MessageBoxCritical;
    default:
      return std::nullopt;
  }
}

QLabel* TextLabel(const std::string& text, QWidget* parent) {
  auto* label = new QLabel(Text(text).replace("\r\n", "\n"), parent);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  const int wanted = label->fontMetrics().size(0, label->text()).width() + 8;
  label->setMinimumWidth(std::clamp(wanted, 260, kWidestText));
  return label;
}

}  // namespace

MessageDialog::MessageDialog(const ui::MessageBox& box, ui::Engine& engine, QWidget* parent)
    : QDialog(parent, Qt::Dialog), box_(box), engine_(engine) {
  setWindowModality(Qt::ApplicationModal);
  setWindowTitle(Text(ui::Form::Titled(engine.banner(), box.title.empty() ? "Punto de venta" : box.title)));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 22, 24, 20);
  layout->setSpacing(22);
  auto* top = new QHBoxLayout;
  top->setSpacing(18);
  if (const auto picture = PictureOf(box.icon)) {
    auto* icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(*picture).pixmap(kIconSize));
    top->addWidget(icon, 0, Qt::AlignTop);
  }
  top->addWidget(TextLabel(box.text, this), 1, Qt::AlignVCenter);
  layout->addLayout(top);
  layout->addWidget(Buttons());
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget* MessageDialog::Buttons() {
  auto* row = new QWidget(this);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(12);
  layout->addStretch(1);
  for (const ui::Answer answer : box_.buttons) {
    auto* button = new QPushButton(Text(ui::CaptionOf(answer)), row);
    button->setMinimumSize(130, 44);
    connect(button, &QPushButton::clicked, this, [this, answer] { Give(answer); });
    button->installEventFilter(this);
    layout->addWidget(button);
    buttons_[answer] = button;
  }
  if (QPushButton* standard = ButtonOf(box_.default_button)) {
    standard->setDefault(true);
    standard->setProperty(kEmphasis, static_cast<int>(ui::Emphasis::Strong));
    QPalette palette = standard->palette();
    palette.setColor(QPalette::ButtonText, Qt::white);
    standard->setPalette(palette);
    standard->setFocus();
  }
  return row;
}

QPushButton* MessageDialog::ButtonOf(ui::Answer answer) const {
  const auto found = buttons_.find(answer);
  return found == buttons_.end() ? nullptr : found->second;
}

void MessageDialog::Give(ui::Answer answer) {
  answer_ = answer;
  hide();
}

void MessageDialog::reject() { Give(ui::Harmless(box_)); }

void MessageDialog::keyPressEvent(QKeyEvent* event) {
  by_key_ = true;  // Esc, or a letter
  const auto typed = event->text().toUcs4();
  const auto answer = typed.isEmpty() ? std::nullopt : ui::AnswerTo(box_, typed.front());
  if (answer) return GiveUnlessScanned(*answer);
  QDialog::keyPressEvent(event);
}

// A letter answers once it is known that no scanner goes on behind it.
void MessageDialog::GiveUnlessScanned(ui::Answer answer) {
  constexpr int kLongerThanAScannersPause = 60;
  scanned_ = false;
  QTimer::singleShot(kLongerThanAScannersPause, this, [this, answer] {
    if (!scanned_) Give(answer);
  });
}

// No key of a scanner's presses a button: the message must be read first.
bool MessageDialog::IsScanners(const QKeyEvent& event) {
  ui::ScanBurst& burst = engine_.Burst();
  const ui::KeyMoment when = MomentOf(event);
  if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
    if (burst.Trails(when)) return true;
    const bool code = burst.LineEnd(when).has_value();
    if (code) engine_.ScanUnanswered();
    return code;
  }
  const auto typed = event.text().toUcs4();
  const bool types = !typed.isEmpty() && QChar::isPrint(typed.front());
  if (!types || burst.Begins(typed.front(), when)) return false;
  scanned_ = true;
  return true;
}

// Whether a button is pressed by Enter or by the mouse.
bool MessageDialog::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    if (IsScanners(static_cast<QKeyEvent&>(*event))) return true;
    by_key_ = true;
  }
  if (event->type() == QEvent::MouseButtonPress) by_key_ = false;
  return false;
}

}  // namespace tpv::qt
