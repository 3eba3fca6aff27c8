#include "adapters/qt/form_layout.h"

#include <QLabel>
#include <QPainter>
#include <algorithm>

#include "adapters/qt/panel.h"
#include "adapters/qt/rows_layout.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

constexpr int kFormMargin = 10;

// The ground that a frame's controls stand on.
class Card : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    Draw(painter, rect(), {colour::kCard, colour::kLine, 1, 6});
  }
};

class FrameView : public ControlView {
 public:
  FrameView(ui::Frame& frame, Surroundings around)
      : ControlView(frame), card_(new Card(&around.parent)), title_(new QLabel(card_)) {
    layout_ = new RowsLayout(*card_);
    layout_->setContentsMargins(kFormMargin, kFormMargin - 4, kFormMargin, kFormMargin - 2);
    title_->setFont(Type(kLabelSize));
    title_->hide();
    layout_->BeginRow();
    layout_->Add(*title_, RowsLayout::Kind::Plain);
  }
  QWidget* Outer() override { return card_; }
  QWidget& card() { return *card_; }
  RowsLayout& layout() { return *layout_; }

  void Sync() override {
    // A frame is never disabled as a widget: each control says so for itself.
    if (card_->isVisibleTo(card_->parentWidget()) != control.visible) {
      card_->setVisible(control.visible);
    }
    const QString caption = Text(control.caption);
    if (title_->text() == caption) return;
    title_->setText(caption);
    title_->setVisible(!caption.isEmpty());
  }

 private:
  Card* card_;
  QLabel* title_;
  RowsLayout* layout_;
};

template <typename Control, typename Make>
std::unique_ptr<ControlView> Try(ui::Control& control, Surroundings around, Make make) {
  auto* wanted = dynamic_cast<Control*>(&control);
  return wanted != nullptr ? make(*wanted, around) : nullptr;
}

std::unique_ptr<ControlView> MakeView(ui::Control& control, Surroundings around) {
  if (auto view = Try<ui::TextBox>(control, around, MakeFieldView)) return view;
  if (auto view = Try<ui::Button>(control, around, MakeButtonView)) return view;
  if (auto view = Try<ui::CheckBox>(control, around, MakeCheckView)) return view;
  if (auto view = Try<ui::OptionButton>(control, around, MakeOptionView)) return view;
  if (auto view = Try<ui::ComboBox>(control, around, MakeComboView)) return view;
  if (auto view = Try<ui::Grid>(control, around, MakeGridView)) return view;
  if (auto view = Try<ui::ListView>(control, around, MakeListView)) return view;
  if (auto view = Try<ui::Chart>(control, around, MakeChartView)) return view;
  if (auto view = Try<ui::Label>(control, around, MakeLabelView)) return view;
  return nullptr;  // menus stand in no row
}

using Row = std::vector<ui::Control*>;

bool IsButton(const ui::Control* control) {
  return dynamic_cast<const ui::Button*>(control) != nullptr;
}

bool AnyTall(const std::vector<Row>& rows);

bool IsTall(const ui::Control* control) {
  if (const auto* frame = dynamic_cast<const ui::Frame*>(control)) return AnyTall(frame->rows);
  return dynamic_cast<const ui::Grid*>(control) != nullptr ||
         dynamic_cast<const ui::ListView*>(control) != nullptr ||
         dynamic_cast<const ui::Chart*>(control) != nullptr;
}

bool AnyTall(const std::vector<Row>& rows) {
  return std::any_of(rows.begin(), rows.end(), [](const Row& row) {
    return std::any_of(row.begin(), row.end(), IsTall);
  });
}

RowsLayout::Kind KindOf(const ui::Control* control) {
  if (IsTall(control)) return RowsLayout::Kind::Tall;
  if (IsButton(control) && !control->stretch) return RowsLayout::Kind::Button;
  const bool wide = control->stretch || dynamic_cast<const ui::Frame*>(control) != nullptr;
  return wide ? RowsLayout::Kind::Wide : RowsLayout::Kind::Plain;
}

// A list is named by its frame, or by its window.
std::string NameAround(const ui::Control& control) {
  const bool framed = control.frame != nullptr && !control.frame->caption.empty();
  return framed ? control.frame->caption : control.form.caption;
}

class Builder {
 public:
  Builder(Actions& actions, Views& views) : actions_(actions), views_(views) {}

  void Fill(RowsLayout& layout, QWidget& parent, const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      layout.BeginRow();
      QString name;  // of what stands before: a code's field names the field with its text
      for (ui::Control* control : row) {
        auto view = Made(*control, parent);
        if (!view) continue;
        if (!control->caption.empty()) name = Text(control->caption);
        if (control->CanFocus() && control->caption.empty()) {
          view->Target()->setAccessibleName(name.isEmpty() ? Text(NameAround(*control)) : name);
        }
        layout.Add(*view->Outer(), KindOf(control));
        views_[control] = std::move(view);
      }
    }
  }

 private:
  std::unique_ptr<ControlView> Made(ui::Control& control, QWidget& parent) {
    auto* frame = dynamic_cast<ui::Frame*>(&control);
    if (frame == nullptr) return MakeView(control, {actions_, parent});
    auto view = std::make_unique<FrameView>(*frame, Surroundings{actions_, parent});
    Fill(view->layout(), view->card(), frame->rows);
    return view;
  }

  Actions& actions_;
  Views& views_;
};

}  // namespace

Views LayOut(ui::Form& form, QWidget& content, Actions& actions) {
  Views views;
  auto* layout = new RowsLayout(content);
  layout->setContentsMargins(kFormMargin, kFormMargin, kFormMargin, kFormMargin);
  Builder(actions, views).Fill(*layout, content, form.rows);
  return views;
}

}  // namespace tpv::qt
