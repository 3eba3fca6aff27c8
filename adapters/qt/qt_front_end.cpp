#include "adapters/qt/qt_front_end.h"

#include <QApplication>
#include <QEventLoop>
#include <QFileDialog>
#include <QPainter>
#include <QPushButton>
#include <utility>

#include "adapters/qt/accessible.h"
#include "adapters/qt/placing.h"
#include "adapters/qt/text.h"
#include "adapters/qt/till_style.h"
#include "base/scoped_value.h"

namespace tpv::qt {

// A form's window for as long as the form is shown.
class QtFrontEnd::Shown {
 public:
  Shown(QtFrontEnd& front_end, ui::Form& form)
      : front_end_(front_end), window_(form, front_end, front_end.Uppermost()) {
    front_end_.DressUp(window_);
    front_end_.windows_.push_back(&window_);
  }
  ~Shown() {
    front_end_.engine_.Drop(window_.form());
    std::erase(front_end_.windows_, &window_);
    front_end_.BackFrom(window_);
  }
  Shown(const Shown&) = delete;
  Shown& operator=(const Shown&) = delete;
  FormWindow& window() { return window_; }

 private:
  QtFrontEnd& front_end_;
  FormWindow window_;
};

QtFrontEnd::QtFrontEnd(Dress dress) : dress_(dress) {
  if (dress_ == Dress::Application) DressApplication();
  TellAccessibility();
}
QtFrontEnd::~QtFrontEnd() = default;

QWidget* QtFrontEnd::Uppermost() const {
  if (progress_ != nullptr) return progress_.get();
  if (box_ != nullptr) return box_;
  if (search_ != nullptr) return search_;
  return windows_.empty() ? host_window_ : windows_.back();
}

// The last window to close must not end a program that is not the till's.
void QtFrontEnd::DressUp(QWidget& window) const {
  if (dress_ == Dress::Application) return;
  DressWindow(window);
  window.setAttribute(Qt::WA_QuitOnClose, false);
}

void QtFrontEnd::Open(QWidget& window) {
  window.resize(window.size().boundedTo(RoomFor(window)));
  PutOver(window, window.parentWidget());
  window.show();
  window.activateWindow();
}

// Whatever is below takes the keyboard again.
void QtFrontEnd::BackFrom(QWidget& window) {
  window.hide();
  if (QWidget* below = Uppermost()) below->activateWindow();
}

void QtFrontEnd::ShowModal(ui::Form& form) {
  engine_.Load(form);
  {
    Shown shown(*this, form);
    FormWindow& window = shown.window();
    window.Sync();
    const QSize kept = form.maximised ? QSize() : memory_.SizeOf(form.name);
    window.resize(kept.isEmpty() ? window.PreferredSize(RoomFor(window)) : kept);
    if (form.maximised && OnScreen()) window.setWindowState(Qt::WindowMaximized);
    Open(window);
    const QSize opened = window.size();
    engine_.Open(form);
    Refresh();
    Wait([&form] { return form.closing; });
    if (!window.isMaximized() && window.size() != opened) memory_.Keep(form.name, window.size());
  }
  engine_.Unload(form);
  Refresh();
}

ui::Answer QtFrontEnd::Show(const ui::MessageBox& box) {
  engine_.CountOpening();
  Refresh();
  MessageDialog dialog(box, engine_, Uppermost());
  {
    const ScopedValue open(box_, &dialog);
    DressUp(dialog);
    dialog.adjustSize();
    Open(dialog);
    if (driver_ != nullptr) driver_->OnBox(box);
    Wait([&dialog] { return dialog.answer().has_value(); });
  }
  BackFrom(dialog);
  engine_.BoxClosed(dialog.answered_by_key());
  return dialog.answer().value_or(ui::Harmless(box));
}

std::optional<std::size_t> QtFrontEnd::Search(ui::SearchRequest& request) {
  engine_.CountOpening();
  Refresh();
  SearchDialog dialog(request, engine_, memory_, Uppermost());
  DressUp(dialog);
  if (driver_ != nullptr) dialog.ReadAll();  // whose hands are faster than the store
  do {
    {
      const ScopedValue open(search_, &dialog);
      Open(dialog);
      Wait([&dialog] { return dialog.closed(); });
    }
    BackFrom(dialog);
  } while (dialog.RunErrand());
  engine_.BoxClosed(dialog.closed_by_key());
  dialog.RequireRead();
  return dialog.chosen();
}

std::string QtFrontEnd::ChooseFile(const ui::FileQuestion& question) {
  using Kind = ui::FileQuestion::Kind;
  if (driver_ != nullptr) return {};
  const QString title = Text(question.title), begin = Text(question.current);
  const QString kinds = Text((question.kinds.empty() ? "" : question.kinds + ";;") + "Todos los ficheros (*)");
  QWidget* over = Uppermost();
  switch (question.kind) {
    case Kind::Folder:
      return Utf8(QFileDialog::getExistingDirectory(over, title, begin));
    case Kind::New:
      return Utf8(QFileDialog::getSaveFileName(over, title, begin, kinds));
    default:
      return Utf8(QFileDialog::getOpenFileName(over, title, begin, kinds));
  }
}

void QtFrontEnd::ShowManual(std::string_view page) {
  QWidget* screen = Uppermost();
  const QString file = ManualFile(Text(std::string(page)));
  if (screen == nullptr || file.isEmpty()) {
    ui::MessageBox box;
    box.text = "El manual no está instalado";
    Show(box);
    return;
  }
  if (manual_ != nullptr && manual_->parentWidget() != screen) delete manual_;
  if (manual_ == nullptr) {
    manual_ = new ManualWindow(*screen);
    DressUp(*manual_);
  }
  manual_->Open(file);
  if (driver_ != nullptr) screen->activateWindow();  // whose hands are on the till alone
}

void QtFrontEnd::ProcessEvents() {
  Refresh();
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

// The dialog's own button is pressed where a driver gives up.
bool QtFrontEnd::ShowProgress(const ui::Progress& progress, std::chrono::milliseconds lasted) {
  constexpr std::chrono::milliseconds kWorthShowing{500};
  constexpr int kAtMost = 20;  // milliseconds for the window system
  const bool gives_up = driver_ != nullptr && driver_->GivesUp(progress);
  if (progress_ == nullptr) {
    if (lasted < kWorthShowing && !gives_up) return false;
    auto dialog = std::make_unique<ProgressDialog>(engine_, Uppermost());
    dialog->Show(progress);
    DressUp(*dialog);
    dialog->adjustSize();
    Open(*dialog);
    progress_ = std::move(dialog);
  }
  progress_->Show(progress);
  if (gives_up) progress_->button()->click();
  QCoreApplication::processEvents(QEventLoop::AllEvents, kAtMost);
  return progress_->given_up();
}

void QtFrontEnd::EndProgress() {
  if (progress_ == nullptr) return;
  const std::unique_ptr<ProgressDialog> dialog = std::move(progress_);
  BackFrom(*dialog);
}

void QtFrontEnd::Wait(const std::function<bool()>& done) {
  if (driver_ != nullptr) {
    while (!done() && driver_->Step()) {
    }
    return;
  }
  QEventLoop loop;
  while (!done()) loop.processEvents(QEventLoop::WaitForMoreEvents);
}

bool QtFrontEnd::Listens(const ui::Form& form) const {
  return engine_.Top() == &form && box_ == nullptr && search_ == nullptr && progress_ == nullptr && !killed_;
}

void QtFrontEnd::Act(const std::function<void(ui::Engine&)>& action) {
  if (killed_ || progress_ != nullptr) return;
  try {
    action(engine_);
  } catch (const ui::TillKilled&) {
    // Not through the window system, which knows no errors.
    killed_ = true;
    error_ = std::current_exception();
    return;
  } catch (const ui::ActionRefused&) {
    // A key that has nothing to do where the focus is.
    if (driver_ != nullptr) error_ = std::current_exception();
  } catch (const std::exception& error) {
    if (driver_ != nullptr) {
      error_ = std::current_exception();
    } else {
      ShowError(error);
    }
  }
  Refresh();
}

void QtFrontEnd::ShowError(const std::exception& error) {
  ui::MessageBox box;
  box.text = std::string("No se ha podido completar la operación.\r\n") + error.what();
  box.icon = ui::Icon::Critical;
  Show(box);
}

void QtFrontEnd::ShowNotices() {
  ui::MessageBox box;
  box.text = notices_.Text();
  box.icon = ui::Icon::Exclamation;
  if (box.text.empty()) return;
  notices_.Clear();
  Show(box);
}

void QtFrontEnd::RethrowError() {
  killed_ = false;
  if (error_) std::rethrow_exception(std::exchange(error_, nullptr));
}

void QtFrontEnd::Refresh() {
  if (progress_ != nullptr) return;  // in the middle of a statement
  for (FormWindow* window : windows_) window->Sync();
}

QPixmap QtFrontEnd::Picture() const {
  if (windows_.empty()) return Uppermost() == nullptr ? QPixmap() : Uppermost()->grab();
  QPixmap picture = windows_.back()->grab();
  for (QWidget* over : {static_cast<QWidget*>(search_), static_cast<QWidget*>(box_)}) {
    if (over == nullptr) continue;
    QPainter painter(&picture);
    const QRect whole({}, windows_.back()->size());
    painter.fillRect(whole, QColor(18, 51, 72, 110));
    QRect place({}, over->size());
    place.moveCenter(whole.center());
    painter.fillRect(place.adjusted(-1, -1, 1, 1), colour::kFieldLine);
    painter.drawPixmap(place.topLeft(), over->grab());
  }
  return picture;
}

bool SavePicture(const QPixmap& picture, const std::string& path) {
  constexpr int kSmallest = 0;
  const auto flags = Qt::ThresholdDither | Qt::AvoidDither;
  const QImage image = picture.toImage().convertToFormat(QImage::Format_Indexed8, flags);
  return !image.isNull() && image.save(Text(path), "PNG", kSmallest);
}

}  // namespace tpv::qt
