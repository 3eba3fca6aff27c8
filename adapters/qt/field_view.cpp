// Text boxes. The engine edits the text; the widget paints it and moves the caret.
#include <QAction>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QLineEdit>
#include <QStyleHints>
#include <QToolButton>

#include "adapters/qt/alignment.h"
#include "adapters/qt/calendar_popup.h"
#include "adapters/qt/captioned.h"
#include "adapters/qt/control_view.h"
#include "adapters/qt/keys.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"
#include "screen/access_keys.h"

namespace tpv::qt {

namespace {

constexpr int kUsualColumns = 12;
constexpr int kUsualCode = 13;  // a bar code
constexpr int kUsualName = 14;  // enough of a name to know it by
constexpr int kUsualAmount = 8;  // 99.999,99: separators are narrow
constexpr int kPadding = 20;

int PixelsOf(const ui::TextBox& box) {
  if (box.emphasis == ui::Emphasis::Strong) return kDisplaySize;
  return box.large ? kLargeSize : kTextSize;
}

QColor ColourOf(const ui::TextBox& box) {
  const auto channel = [&](int shift) { return static_cast<int>(box.back_colour >> shift & 0xFF); };
  const QColor colour(channel(0), channel(8), channel(16));
  return box.locked && colour == Qt::white ? colour::kShown : colour;
}

// As wide as its columns; where the window is narrow, as what it usually holds.
class Edit : public QLineEdit {
 public:
  Edit(QWidget* parent, const ui::TextBox& box)
      : QLineEdit(parent), box_(box), columns_(box.columns > 0 ? box.columns : kUsualColumns) {}
  QSize sizeHint() const override { return Around(columns_); }
  QSize minimumSizeHint() const override {
    const int text = box_.stretch ? kUsualName : kUsualCode;
    return Around(std::min(columns_, box_.align == ui::Align::Right ? kUsualAmount : text));
  }

 private:
  // A form asks each field for its sizes again and again: its type is measured once.
  QSize Around(int digits) const {
    if (digit_.isEmpty()) {
      const QFontMetrics metrics(font());
      digit_ = {metrics.horizontalAdvance(u'0'), metrics.height()};
    }
    return {digits * digit_.width() + kPadding, digit_.height() + 12};
  }

  const ui::TextBox& box_;
  int columns_;
  mutable QSize digit_;
};

class FieldView : public ControlView {
 public:
  FieldView(ui::TextBox& box, Surroundings around)
      : ControlView(box),
        box_(box),
        actions_(around.actions),
        outer_(new Captioned(&around.parent, AlignmentOf(box.align))),
        edit_(new Edit(outer_, box)) {
    const int pixels = PixelsOf(box);
    if (pixels != kTextSize) edit_->setFont(Type(pixels));
    edit_->setAlignment(AlignmentOf(box.align) | Qt::AlignVCenter);
    if (box.secret) edit_->setEchoMode(QLineEdit::Password);
    edit_->setTextMargins(5, 0, 5, 0);
    edit_->setContextMenuPolicy(Qt::NoContextMenu);
    edit_->setAcceptDrops(false);
    edit_->setSizePolicy(box.stretch ? QSizePolicy::Expanding : QSizePolicy::Preferred,
                         QSizePolicy::Fixed);
    if (box.input == ui::Input::Date) OfferCalendar();
    outer_->Hold(*edit_);
    QObject::connect(edit_, &QLineEdit::selectionChanged, [this] { TakeSelection(); });
    QObject::connect(edit_, &QLineEdit::cursorPositionChanged, [this] { TakeSelection(); });
  }

  QWidget* Outer() override { return outer_; }
  QWidget* Target() override { return edit_; }

  void Sync() override {
    ControlView::Sync();
    syncing_ = true;
    if (HasNewCaption()) outer_->SetCaption(Text(box_.caption), Text(ui::MarkedCaption(box_)));
    const QString text = Text(box_.text);
    if (edit_->text() != text) edit_->setText(text);
    if (edit_->isReadOnly() != box_.locked) edit_->setReadOnly(box_.locked);
    SyncColour();
    SyncSelection(text);
    syncing_ = false;
  }

  bool Filter(QObject*, QEvent& event) override {
    const bool press = event.type() == QEvent::MouseButtonPress ||
                       event.type() == QEvent::MouseButtonDblClick;
    if (!press && event.type() != QEvent::MouseButtonRelease) return false;
    if (static_cast<QMouseEvent&>(event).button() != Qt::LeftButton) return true;
    if (!press || control.form.focus == &control) return false;
    // The click that brings the focus leaves the whole text selected.
    actions_.Act([this](ui::Engine& engine) { engine.FocusOn(control); });
    return true;
  }

  bool TakesKey(const QKeyEvent& event) override { return MovesCaret(event); }
  std::string Shown() const override { return Utf8(edit_->text()); }
  std::string Expected() const override { return box_.text; }

 private:
  void OfferCalendar() {
    QAction* open = edit_->addAction(CalendarIcon(), QLineEdit::TrailingPosition);
    open->setToolTip("Calendario (F4)");
    edit_->findChild<QToolButton*>()->setAccessibleName("Calendario de " + Text(box_.caption));
    QObject::connect(open, &QAction::triggered, [this] {
      actions_.Act([this](ui::Engine& engine) {
        engine.FocusOn(control);
        if (control.form.focus == &control) engine.PressKey(ui::Key::F4);
      });
    });
  }

  void SyncColour() {
    const QColor colour = ColourOf(box_);
    if (colour == colour_) return;
    colour_ = colour;
    QPalette palette = edit_->palette();
    palette.setColor(QPalette::Active, QPalette::Base, colour);
    palette.setColor(QPalette::Inactive, QPalette::Base, colour);
    edit_->setPalette(palette);
  }

  void SyncSelection(const QString& text) {
    if (control.form.focus != &control) {
      if (edit_->hasSelectedText() || edit_->cursorPosition() != 0) edit_->setCursorPosition(0);
      return;
    }
    const int start = Units(text, box_.selection_start);
    const int length = Units(text.mid(start), box_.selection_length);
    const bool same = length == 0 ? !edit_->hasSelectedText() && edit_->cursorPosition() == start
                                  : edit_->selectionStart() == start &&
                                        edit_->selectionLength() == length;
    if (same) return;
    if (length == 0) {
      edit_->setCursorPosition(start);
    } else {
      edit_->setSelection(start, length);
    }
  }

  // The operator moved the caret or marked text in the widget.
  void TakeSelection() {
    if (syncing_ || control.form.focus != &control) return;
    const QString text = edit_->text();
    const bool marked = edit_->hasSelectedText();
    const int start = marked ? edit_->selectionStart() : edit_->cursorPosition();
    box_.selection_start = Characters(text, start);
    box_.selection_length = marked ? Characters(text.mid(start), edit_->selectionLength()) : 0;
  }

  ui::TextBox& box_;
  Actions& actions_;
  Captioned* outer_;
  Edit* edit_;
  QColor colour_ = colour::kCard;  // the palette's
  bool syncing_ = false;
};

}  // namespace

std::unique_ptr<ControlView> MakeFieldView(ui::TextBox& box, Surroundings around) {
  return std::make_unique<FieldView>(box, around);
}

}  // namespace tpv::qt
