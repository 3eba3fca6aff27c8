// Combo boxes: the entries drop down, the engine hears what was chosen.
#include <QAbstractItemView>
#include <QComboBox>
#include <QKeyEvent>
#include <QSignalBlocker>

#include "adapters/qt/captioned.h"
#include "adapters/qt/control_view.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"
#include "screen/access_keys.h"

namespace tpv::qt {

namespace {

constexpr int kUsualChoice = 14;

class ComboView : public ControlView {
 public:
  ComboView(ui::ComboBox& combo, Surroundings around)
      : ControlView(combo),
        combo_(combo),
        actions_(around.actions),
        outer_(new Captioned(&around.parent, Qt::AlignLeft)),
        widget_(new QComboBox(outer_)) {
    widget_->setFocusPolicy(Qt::NoFocus);
    widget_->setMinimumHeight(QFontMetrics(widget_->font()).height() + 12);
    widget_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    widget_->setMinimumContentsLength(combo.columns > 0 ? combo.columns : kUsualChoice);
    widget_->setMaxVisibleItems(14);
    outer_->Hold(*widget_);
    QObject::connect(widget_, &QComboBox::activated, [this](int row) { Choose(row); });
  }

  QWidget* Outer() override { return outer_; }
  QWidget* Target() override { return widget_; }

  void Sync() override {
    ControlView::Sync();
    if (HasNewCaption()) outer_->SetCaption(Text(combo_.caption), Text(ui::MarkedCaption(combo_)));
    const QSignalBlocker quiet(widget_);
    if (entries_ != combo_.items) {
      entries_ = combo_.items;
      widget_->clear();
      for (const std::string& entry : entries_) widget_->addItem(Text(entry));
    }
    if (widget_->currentIndex() != combo_.index) widget_->setCurrentIndex(combo_.index);
  }

  bool Filter(QObject*, QEvent& event) override {
    if (event.type() == QEvent::Wheel) return true;  // no change by accident
    if (event.type() != QEvent::MouseButtonPress || control.form.focus == &control) return false;
    actions_.Act([this](ui::Engine& engine) { engine.FocusOn(control); });
    return control.form.focus != &control;
  }

  bool TakesKey(const QKeyEvent& event) override {
    return event.key() == Qt::Key_F4 ||
           (event.key() == Qt::Key_Down && event.modifiers() & Qt::AltModifier);
  }
  std::string Shown() const override { return Utf8(widget_->currentText()); }
  std::string Expected() const override { return combo_.Text(); }

 private:
  void Choose(int row) {
    actions_.Act([this, row](ui::Engine& engine) { engine.SelectRow(control, row); });
  }

  ui::ComboBox& combo_;
  Actions& actions_;
  Captioned* outer_;
  QComboBox* widget_;
  ui::Entries entries_;
};

}  // namespace

std::unique_ptr<ControlView> MakeComboView(ui::ComboBox& combo, Surroundings around) {
  return std::make_unique<ComboView>(combo, around);
}

}  // namespace tpv::qt
