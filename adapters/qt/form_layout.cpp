#include "adapters/qt/form_layout.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPainter>
#include <algorithm>

#include "adapters/qt/panel.h"
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
    Draw(painter, rect(), {colour::kCard, colour::kLine, 1, 6});
  }
};

class FrameView : public ControlView {
 public:
  FrameView(ui::Frame& frame, Surroundings around)
      : ControlView(frame), card_(new Card(&around.parent)), title_(new QLabel(card_)) {
    layout_ = new QVBoxLayout(card_);
    layout_->setContentsMargins(kMargin, kRowGap, kMargin, kMargin - 2);
    layout_->setSpacing(kRowGap);
    title_->setFont(Type(kLabelSize));
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

bool AnyTall(const std::vector<Row>& rows);

bool IsTall(const ui::Control* control) {
  if (const auto* frame = dynamic_cast<const ui::Frame*>(control)) return AnyTall(frame->rows);
  return dynamic_cast<const ui::Grid*>(control) != nullptr ||
         dynamic_cast<const ui::ListView*>(control) != nullptr;
}

bool AnyTall(const std::vector<Row>& rows) {
  return std::any_of(rows.begin(), rows.end(), [](const Row& row) {
    return std::any_of(row.begin(), row.end(), IsTall);
  });
}

bool IsWide(const ui::Control* control) {
  return control->stretch || IsTall(control) || dynamic_cast<const ui::Frame*>(control) != nullptr;
}

class Builder {
 public:
  Builder(Actions& actions, Views& views) : actions_(actions), views_(views) {}

  // What is tall expands by itself while it is visible.
  void Fill(QVBoxLayout& layout, QWidget& parent, const std::vector<Row>& rows) {
    for (const Row& row : rows) {
      auto* line = new QHBoxLayout;
      line->setSpacing(kGap);
      FillRow(*line, parent, row);
      layout.addLayout(line);
    }
  }

 private:
  void FillRow(QHBoxLayout& line, QWidget& parent, const Row& row) {
    const bool toolbar = row.size() > 3 && std::all_of(row.begin(), row.end(), IsButton);
    const bool tall = std::any_of(row.begin(), row.end(), IsTall);
    for (ui::Control* control : row) {
      const bool is_frame = dynamic_cast<ui::Frame*>(control) != nullptr;
      auto view = is_frame ? Framed(parent, static_cast<ui::Frame&>(*control), tall)
                           : MakeView(*control, {actions_, parent});
      if (!view) continue;
      const Qt::Alignment place = is_frame || IsTall(control) ? Qt::Alignment() : Qt::AlignBottom;
      line.addWidget(view->Outer(), toolbar || IsWide(control) ? 1 : 0, place);
      views_[control] = std::move(view);
    }
    if (!toolbar && std::none_of(row.begin(), row.end(), IsWide)) line.addStretch(1);
  }

  std::unique_ptr<ControlView> Framed(QWidget& parent, ui::Frame& frame, bool beside_tall) {
    auto view = std::make_unique<FrameView>(frame, Surroundings{actions_, parent});
    Fill(view->layout(), view->card(), frame.rows);
    if (beside_tall && !IsTall(&frame)) view->layout().addStretch(1);  // its rows stay on top
    return view;
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
  Builder(actions, views).Fill(*layout, content, form.rows);
  if (!AnyTall(form.rows)) layout->addStretch(1);
  return views;
}

}  // namespace tpv::qt
