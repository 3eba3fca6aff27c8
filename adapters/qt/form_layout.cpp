#include "adapters/qt/form_layout.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <algorithm>
#include <typeindex>

#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"

namespace tpv::qt {

namespace {

constexpr int kMargin = 12;
constexpr int kRowGap = 8;
constexpr int kGap = 12;

// The ground that a frame's controls stand on.
class Card : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(colour::kLine);
    painter.setBrush(colour::kCard);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
  }
};

class FrameView : public ControlView {
 public:
  FrameView(ui::Frame& frame, Surroundings around)
      : ControlView(frame), card_(new Card(&around.parent)), title_(new QLabel(card_)) {
    layout_ = new QVBoxLayout(card_);
    layout_->setContentsMargins(kMargin, kRowGap, kMargin, kMargin - 2);
    layout_->setSpacing(kRowGap);
    title_->setFont(Type(kLabelSize, true));
    title_->hide();
    layout_->addWidget(title_);
  }
  QWidget* Outer() override { return card_; }
  QWidget& card() { return *card_; }
  QVBoxLayout& layout() { return *layout_; }

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
  QVBoxLayout* layout_;
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
  if (auto view = Try<ui::Label>(control, around, MakeLabelView)) return view;
  return nullptr;  // menus stand in no row
}

using Row = std::vector<ui::Control*>;

bool IsButton(const ui::Control* control) {
  return dynamic_cast<const ui::Button*>(control) != nullptr;
}

class Builder {
 public:
  Builder(Actions& actions, Views& views) : actions_(actions), views_(views) {}

  // True when something in the rows takes height.
  bool Fill(QVBoxLayout& layout, QWidget& parent, const std::vector<Row>& rows) {
    bool tall = false;
    for (const Row& row : rows) {
      auto* line = new QHBoxLayout;
      line->setSpacing(kGap);
      const bool tall_row = FillRow(*line, parent, row);
      layout.addLayout(line);  // what is tall expands by itself while it is visible
      tall = tall || tall_row;
    }
    return tall;
  }

 private:
  bool FillRow(QHBoxLayout& line, QWidget& parent, const Row& row) {
    const bool stretches = std::any_of(row.begin(), row.end(), Wide);
    const bool toolbar = row.size() > 3 && std::all_of(row.begin(), row.end(), IsButton);
    bool tall = false;
    for (ui::Control* control : row) {
      const bool tall_control = Place(line, parent, *control, toolbar || Wide(control));
      tall = tall || tall_control;
    }
    if (!stretches && !toolbar) line.addStretch(1);
    return tall;
  }

  static bool Wide(const ui::Control* control) {
    return control->stretch || dynamic_cast<const ui::Frame*>(control) != nullptr ||
           dynamic_cast<const ui::Grid*>(control) != nullptr ||
           dynamic_cast<const ui::ListView*>(control) != nullptr;
  }

  bool Place(QHBoxLayout& line, QWidget& parent, ui::Control& control, bool wide) {
    bool tall = false;
    std::unique_ptr<ControlView> view;
    if (auto* frame = dynamic_cast<ui::Frame*>(&control)) {
      auto framed = std::make_unique<FrameView>(*frame, Surroundings{actions_, parent});
      tall = Fill(framed->layout(), framed->card(), frame->rows);
      // Beside a taller frame the rows stay together at the top.
      if (!tall) {
        framed->layout().addItem(
            new QSpacerItem(0, 0, QSizePolicy::Minimum, QSizePolicy::Preferred));
      }
      view = std::move(framed);
    } else {
      view = MakeView(control, {actions_, parent});
      if (!view) return false;
      tall = view->Tall();
    }
    const bool fills = tall || dynamic_cast<ui::Frame*>(&control) != nullptr;
    line.addWidget(view->Outer(), wide ? 1 : 0, fills ? Qt::Alignment() : Qt::AlignBottom);
    views_[&control] = std::move(view);
    return tall;
  }

  Actions& actions_;
  Views& views_;
};

}  // namespace

Views LayOut(ui::Form& form, QWidget& content, Actions& actions) {
  Views views;
  auto* layout = new QVBoxLayout(&content);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kRowGap);
  const bool tall = Builder(actions, views).Fill(*layout, content, form.rows);
  if (!tall) layout->addStretch(1);
  return views;
}

}  // namespace tpv::qt
