// What is pressed, ticked or chosen with one click, and captions.
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <algorithm>

#include "adapters/qt/control_view.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"
#include "screen/access_keys.h"

namespace tpv::qt {

namespace {

constexpr int kButtonHeight = 42;
constexpr int kWrapped = 260;  // the least width of a text that may take several lines
constexpr int kGives = 26;  // of the room beside a caption, where the window is narrow

// Qt's mark of the access key is the model's.
template <typename Widget>
void SyncCaption(Widget& widget, const ui::Control& control) {
  const QString caption = Text(ui::MarkedCaption(control));
  if (widget.text() != caption) widget.setText(caption);
}

template <typename Widget>
class PressView : public ControlView {
 public:
  PressView(ui::Control& shown, Surroundings around)
      : ControlView(shown), widget_(new Widget(&around.parent)) {
    widget_->setFocusPolicy(Qt::NoFocus);
    QObject::connect(widget_, &QAbstractButton::clicked, [this, &actions = around.actions] {
      actions.Act([this](ui::Engine& engine) { engine.Click(control); });
    });
  }
  QWidget* Outer() override { return widget_; }
  std::string Shown() const override { return Utf8(widget_->text()); }
  std::string Expected() const override { return ui::MarkedCaption(control); }

 protected:
  Widget* widget_;
};

// Measures its text once: a form asks each button for its size again and again.
class Command : public QPushButton {
 public:
  using QPushButton::QPushButton;
  QSize sizeHint() const override {
    if (measured_ == text() && measured_font_ == font()) return size_;
    measured_ = text();
    measured_font_ = font();
    return size_ = QPushButton::sizeHint();
  }
  QSize minimumSizeHint() const override { return sizeHint() - QSize(kGives, 0); }

 private:
  mutable QString measured_;
  mutable QFont measured_font_;
  mutable QSize size_;
};

class ButtonView : public PressView<Command> {
 public:
  ButtonView(ui::Button& button, Surroundings around) : PressView(button, around), button_(button) {
    widget_->setMinimumHeight(kButtonHeight);
    widget_->setAutoDefault(false);
    widget_->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
  }
  void Sync() override {
    ControlView::Sync();
    if (HasNewCaption() || heading_ != button_.heading) {
      heading_ = button_.heading;
      widget_->setText(Heading() + Text(ui::MarkedCaption(control)));
    }
    SyncEmphasis();
  }
  std::string Shown() const override { return Utf8(widget_->text().mid(Heading().size())); }

 private:
  QString Heading() const { return button_.heading.empty() ? "" : Text(button_.heading) + ": "; }
  void SyncEmphasis() {
    if (emphasis_ == control.emphasis) return;
    emphasis_ = control.emphasis;
    widget_->setProperty(kEmphasis, static_cast<int>(emphasis_));
    const QColor colours[] = {colour::kText, Qt::white, colour::kWarning};
    QPalette palette = widget_->palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
      palette.setColor(group, QPalette::ButtonText, colours[static_cast<int>(emphasis_)]);
    }
    widget_->setPalette(palette);
  }

  ui::Button& button_;
  std::string heading_;  // as shown
  ui::Emphasis emphasis_ = ui::Emphasis::Normal;
};

// A mark that the model sets; the widget's own toggling does not count.
template <typename Widget, typename Control>
class MarkView : public PressView<Widget> {
 public:
  MarkView(Control& mark, Surroundings around) : PressView<Widget>(mark, around), mark_(mark) {
    this->widget_->setAutoExclusive(false);
    this->widget_->setMinimumHeight(34);
  }
  void Sync() override {
    ControlView::Sync();
    if (this->HasNewCaption()) SyncCaption(*this->widget_, this->control);
    const QSignalBlocker quiet(this->widget_);
    this->widget_->setChecked(mark_.checked);
  }
  std::string Shown() const override { return this->widget_->isChecked() ? "True" : "False"; }
  std::string Expected() const override { return mark_.checked ? "True" : "False"; }

 private:
  Control& mark_;
};

class LabelView : public ControlView {
 public:
  LabelView(ui::Label& label, Surroundings around)
      : ControlView(label), widget_(new QLabel(&around.parent)) {
    widget_->setFont(Type(label.large ? kLargeSize : kTextSize));
    widget_->setTextFormat(Qt::PlainText);
    if (label.lines > 0) {
      widget_->setMinimumHeight(label.lines * widget_->fontMetrics().lineSpacing());
      widget_->setAlignment(Qt::AlignTop);
    }
    if (!label.stretch) return;
    widget_->setWordWrap(true);
    const int asked = label.columns * widget_->fontMetrics().averageCharWidth();
    widget_->setMinimumWidth(std::max(kWrapped, asked));
  }
  QWidget* Outer() override { return widget_; }
  void Sync() override {
    ControlView::Sync();
    if (HasNewCaption()) SyncCaption(*widget_, control);
  }
  std::string Shown() const override { return Utf8(widget_->text()); }
  std::string Expected() const override { return control.caption; }

 private:
  QLabel* widget_;
};

}  // namespace

std::unique_ptr<ControlView> MakeLabelView(ui::Label& label, Surroundings around) {
  return std::make_unique<LabelView>(label, around);
}

std::unique_ptr<ControlView> MakeButtonView(ui::Button& button, Surroundings around) {
  return std::make_unique<ButtonView>(button, around);
}

std::unique_ptr<ControlView> MakeCheckView(ui::CheckBox& check, Surroundings around) {
  return std::make_unique<MarkView<QCheckBox, ui::CheckBox>>(check, around);
}

std::unique_ptr<ControlView> MakeOptionView(ui::OptionButton& option, Surroundings around) {
  return std::make_unique<MarkView<QRadioButton, ui::OptionButton>>(option, around);
}

}  // namespace tpv::qt
