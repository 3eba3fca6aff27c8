#include "adapters/qt/form_window.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QVBoxLayout>
#include <algorithm>

#include "adapters/qt/accessible.h"
#include "adapters/qt/calendar_popup.h"
#include "adapters/qt/content_area.h"
#include "adapters/qt/fit.h"
#include "adapters/qt/keys.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"
#include "base/date_time.h"
#include "base/text.h"
#include "screen/list_document.h"

namespace tpv::qt {

namespace {

// Of a window with a grid or list.
constexpr QSize kUsualSize(1280, 800);

// Layouts keep their sizes until their window shows; what the first look at the
// model changed must count before, from the inside out.
void SettleLayouts(QWidget& widget) {
  for (QObject* child : widget.children()) {
    if (child->isWidgetType()) SettleLayouts(static_cast<QWidget&>(*child));
  }
  if (widget.layout() == nullptr) return;
  widget.layout()->invalidate();
  widget.layout()->activate();
}

// What a date field holds, today when that is no day.
QDate DayIn(const std::string& text) {
  const QDate today = QDate::currentDate();
  const auto day = ParseTypedDate(text, {today.year(), today.month(), today.day()});
  return day ? QDate(day->year, day->month, day->day) : today;
}

}  // namespace

FormWindow::FormWindow(ui::Form& form, WindowOwner& owner, QWidget* parent)
    : QWidget(parent, Qt::Window),
      form_(form),
      owner_(owner),
      band_(new StatusBand(this, [this](ui::Key key) {
        if (owner_.Listens(form_)) owner_.Act([key](ui::Engine& engine) { engine.PressKey(key); });
      })),
      notices_(new NoticeBand(this, [&owner] { owner.Notices().Clear(); })),
      scroll_(new ContentArea(this)) {
  setWindowModality(Qt::ApplicationModal);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(band_);
  layout->addWidget(notices_);
  layout->addWidget(scroll_, 1);
  auto* content = new QWidget;
  views_ = LayOut(form, *content, owner);
  NameAndDescribe(form, views_);
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->setWidgetResizable(true);
  scroll_->setWidget(content);
  for (const auto& [control, view] : views_) {
    Watch(*view->Target(), *view);
    if (view->Surface() != view->Target()) Watch(*view->Surface(), *view);
    if (auto* area = qobject_cast<QAbstractScrollArea*>(view->Target())) {
      Watch(*area->viewport(), *view);
    }
  }
}

FormWindow::~FormWindow() {
  for (const auto& [widget, view] : watched_) widget->removeEventFilter(this);
  if (wait_cursor_) QApplication::restoreOverrideCursor();
}

void FormWindow::Watch(QWidget& widget, ControlView& view) {
  watched_[&widget] = &view;
  widget.installEventFilter(this);
}

ControlView* FormWindow::ViewOf(const ui::Control& control) const {
  const auto found = views_.find(&control);
  return found == views_.end() ? nullptr : found->second.get();
}

QSize FormWindow::PreferredSize(const QSize& room) const {
  if (form_.maximised) return room;
  SettleLayouts(*scroll_->widget());
  const QWidget& content = *scroll_->widget();
  const bool tall = std::any_of(views_.begin(), views_.end(),
                                [](const auto& entry) { return entry.second->Tall(); });
  if (tall) return kUsualSize.boundedTo(room);
  const QSize band = band_->isHidden() ? QSize(0, 0) : band_->sizeHint();
  const int width = std::min(std::max(content.sizeHint().width(), band.width()), room.width());
  const int above = band.height() + (notices_->isHidden() ? 0 : notices_->heightForWidth(width));
  return {width, std::min(content.heightForWidth(width) + above, room.height())};
}

void FormWindow::Reveal(const ControlView& view) {
  scroll_->ensureWidgetVisible(const_cast<ControlView&>(view).Outer(), 8, 8);
}

void FormWindow::Sync() {
  const QString title = Text(form_.Title());
  if (windowTitle() != title) setWindowTitle(title);
  band_->Show(form_.Band(), form_.warning);
  notices_->Show(owner_.Notices().Text());
  SyncGround();
  for (const auto& [control, view] : views_) view->Sync();
  SyncFocus();
  SyncMenu();
  SyncCalendar();
  if (wait_cursor_ == form_.wait_cursor) return;
  wait_cursor_ = form_.wait_cursor;
  if (wait_cursor_) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

// What must not be taken for another screen stands on another ground.
void FormWindow::SyncGround() {
  const QColor ground = form_.warning ? colour::kWarningGround : colour::kGround;
  if (palette().color(QPalette::Window) == ground) return;
  QPalette colours = palette();
  colours.setColor(QPalette::Window, ground);
  setPalette(colours);
}

void FormWindow::SyncFocus() {
  ControlView* view = form_.focus != nullptr ? ViewOf(*form_.focus) : nullptr;
  QWidget* target = view != nullptr ? view->Target() : this;
  if (focusWidget() == target && target->hasFocus()) return;
  target->setFocus();
  if (view != nullptr) Reveal(*view);
}

void FormWindow::SyncMenu() {
  if (form_.open_menu == nullptr) {
    if (menu_) menu_->hide();
    return;
  }
  if (menu_ && menu_->isVisible()) return;
  if (menu_) menu_->deleteLater();  // it may be the one that asked for this one
  menu_ = new QMenu(this);
  QObject::connect(menu_, &QMenu::aboutToHide, this, [this] {
    // The choice, if any, comes right after this and still needs the menu.
    const auto forget = [this] {
      if (!menu_->isVisible()) form_.open_menu = nullptr;
    };
    QMetaObject::invokeMethod(this, forget, Qt::QueuedConnection);
  });
  for (const ui::MenuEntry& entry : form_.open_menu->entries) {
    QAction* action = menu_->addAction(Text(entry.caption));
    action->setObjectName(Text(entry.name));
    QObject::connect(action, &QAction::triggered, this, [this, name = entry.name] {
      owner_.Act([&](ui::Engine& engine) { engine.ChooseMenu(name); });
    });
  }
  ControlView* view = form_.focus != nullptr ? ViewOf(*form_.focus) : nullptr;
  const QPoint at = view != nullptr ? view->MenuPoint() : QPoint();
  menu_->popup(at.isNull() ? QCursor::pos() : at);
}

void FormWindow::SyncCalendar() {
  if (form_.open_calendar == nullptr) {
    if (calendar_) calendar_->hide();
    return;
  }
  if (calendar_ && calendar_->isVisible()) return;
  if (calendar_) calendar_->deleteLater();
  calendar_ = new CalendarPopup(
      this, DayIn(form_.open_calendar->text),
      [this, box = form_.open_calendar](const QDate& day) {
        form_.open_calendar = box;
        owner_.Act([&](ui::Engine& engine) {
          engine.ChooseDay({day.year(), day.month(), day.day()});
        });
      },
      [this] { form_.open_calendar = nullptr; });
  if (ControlView* view = ViewOf(*form_.open_calendar)) calendar_->OpenUnder(*view->Target());
}

std::string FormWindow::Difference() const {
  if (std::string misfit = Misfit(*this); !misfit.empty()) return misfit;
  for (const auto& [control, view] : views_) {
    const bool shown = view->Outer()->isVisible();
    if (shown != control->IsVisible()) return control->name + ": visible";
    if (!control->CanFocus()) continue;
    if (view->Target()->isEnabled() != control->IsEnabled()) return control->name + ": enabled";
    if (view->Shown() != view->Expected()) return control->name + ": " + view->Shown();
  }
  const ControlView* view = form_.focus != nullptr ? ViewOf(*form_.focus) : nullptr;
  if (view != nullptr && focusWidget() != const_cast<ControlView*>(view)->Target()) {
    return form_.focus->name + ": focus";
  }
  return {};
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  const auto found = watched_.find(watched);
  if (found == watched_.end()) return false;
  ControlView& view = *found->second;
  switch (event->type()) {
    case QEvent::ShortcutOverride:
      event->accept();  // every key is the screen's
      return true;
    case QEvent::KeyPress:
      return Press(static_cast<QKeyEvent&>(*event), &view);
    case QEvent::KeyRelease:
      Release(static_cast<QKeyEvent&>(*event));
      return true;
    case QEvent::InputMethod:  // accents and other composed characters
      TypeText(static_cast<QInputMethodEvent*>(event)->commitString());
      return true;
    default:
      return owner_.Listens(form_) && view.Filter(watched, *event);
  }
}

void FormWindow::keyPressEvent(QKeyEvent* event) { Press(*event, nullptr); }
void FormWindow::keyReleaseEvent(QKeyEvent* event) { Release(*event); }

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (!owner_.Listens(form_)) return;
  owner_.Act([](ui::Engine& engine) { engine.CloseBox(); });
}

// True when the widget is not to see the key.
bool FormWindow::Press(QKeyEvent& event, ControlView* view) {
  if (!owner_.Listens(form_)) return true;
  if (event.modifiers() & Qt::AltModifier && !event.text().isEmpty()) {
    std::size_t first = 0;
    const char32_t letter = NextCharacter(FoldCase(Utf8(event.text())), first);
    owner_.Act([letter](ui::Engine& engine) { engine.AccessKey(letter); });
    return true;
  }
  if (view != nullptr && view->TakesKey(event)) return false;
  auto* list = dynamic_cast<ui::List*>(form_.focus);
  if (list != nullptr && event.matches(QKeySequence::Copy)) {
    QApplication::clipboard()->setText(Text(ClipboardText(*list)));
    return true;
  }
  const bool wants_menu = event.key() == Qt::Key_Menu ||
                          (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
  if (list != nullptr && wants_menu) {
    owner_.Act([list](ui::Engine& engine) { engine.OpenListMenu(*list); });
    return true;
  }
  if (event.modifiers() & Qt::ControlModifier || event.matches(QKeySequence::Paste) ||
      event.matches(QKeySequence::Cut)) {
    PasteOrCut(event);
    return true;
  }
  if (const auto key = KeyOf(event)) {
    PressKey(*key, event.isAutoRepeat() ? 0 : event.key(), MomentOf(event));
  } else {
    TypeText(event.text(), MomentOf(event));
  }
  return true;
}

void FormWindow::PressKey(ui::Key key, int code, ui::KeyMoment when) {
  using enum ui::Key;
  const bool repeats = key == Up || key == Down || key == Delete || key == Backspace;
  if (code == 0 && !repeats) return;  // a key held down acts once
  owner_.Act([&](ui::Engine& engine) {
    if (code != 0) held_[code] = engine.Openings();
    engine.KeyDown(key, when);
  });
}

void FormWindow::Release(QKeyEvent& event) {
  if (event.isAutoRepeat() || !owner_.Listens(form_)) return;
  const auto held = held_.find(event.key());
  if (held == held_.end()) return;  // pressed somewhere else
  const std::size_t openings = held->second;
  held_.erase(held);
  const auto key = KeyOf(event);
  if (!key) return;
  owner_.Act([&](ui::Engine& engine) {
    if (engine.Openings() == openings && !form_.closing) engine.KeyUp(*key);
  });
}

void FormWindow::TypeText(const QString& text, ui::KeyMoment when) {
  const std::string typed = Utf8(text);
  for (std::size_t at = 0; at < typed.size();) {
    const char32_t character = NextCharacter(typed, at);
    if (character < U' ' || !owner_.Listens(form_)) continue;
    owner_.Act([&](ui::Engine& engine) { engine.TypeCharacter(character, when); });
  }
}

// The clipboard goes through the key filters as if it were typed.
void FormWindow::PasteOrCut(const QKeyEvent& event) {
  auto* box = dynamic_cast<ui::TextBox*>(form_.focus);
  if (box == nullptr) return;
  if (event.matches(QKeySequence::Paste)) {
    TypeText(QApplication::clipboard()->text().section(u'\n', 0, 0));
  } else if (event.matches(QKeySequence::Cut) && box->selection_length > 0 && !box->locked) {
    const QString text = Text(box->text);
    const int start = Units(text, box->selection_start);
    const int length = Units(text.mid(start), box->selection_length);
    QApplication::clipboard()->setText(text.mid(start, length));
    owner_.Act([](ui::Engine& engine) { engine.PressKey(ui::Key::Delete); });
  }
}

}  // namespace tpv::qt
