// The front end of real windows: screens, message boxes and search dialogs on
// top of each other, over the shared event engine.
#pragma once

#include <QPixmap>
#include <QPointer>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

#include "adapters/qt/form_window.h"
#include "adapters/qt/manual_window.h"
#include "adapters/qt/message_dialog.h"
#include "adapters/qt/progress_dialog.h"
#include "adapters/qt/search_dialog.h"
#include "platform/ui/operator.h"

namespace tpv::qt {

// Needs a QApplication that outlives it; of another program's, only the till's own
// windows look like the till. What a handler throws is shown to the
// operator, or kept for the driver when there is one.
class QtFrontEnd : public ui::FrontEnd, public WindowOwner {
 public:
  enum class Dress { Application, OwnWindows };
  explicit QtFrontEnd(Dress dress = Dress::Application);
  ~QtFrontEnd() override;

  // From now on whatever is on top asks the driver instead of waiting.
  void SetDriver(ui::Driver& driver) { driver_ = &driver; }
  // Where sizes and widths are kept; without them each window opens anew.
  void SetSettings(Settings& settings) { memory_.Use(settings); }
  // The window that screens opened by the host stand over; null for none.
  void SetHostWindow(QWidget* window) { host_window_ = window; }

  void ShowModal(ui::Form& form) override;
  void Load(ui::Form& form) override { engine_.Load(form); }
  ui::Answer Show(const ui::MessageBox& box) override;
  std::optional<std::size_t> Search(ui::SearchRequest& request) override;
  std::string ChooseFile(const ui::FileQuestion& question) override;
  void SetBanner(std::string_view banner) override { engine_.SetBanner(banner); }
  void ShowManual(std::string_view page) override;
  void ProcessEvents() override;
  bool ShowProgress(const ui::Progress& progress, std::chrono::milliseconds lasted) override;
  void EndProgress() override;
  void Notify(const Notice& notice) override { notices_.Post(notice); }
  // Tells in a box what no window has shown: for the end of a program.
  void ShowNotices();

  NoticeBoard& Notices() override { return notices_; }
  void Act(const std::function<void(ui::Engine&)>& action) override;
  bool Listens(const ui::Form& form) const override;
  WindowMemory& Memory() override { return memory_; }

  // Brings all windows to what the forms say.
  void Refresh();
  ui::Form* Top() const { return engine_.Top(); }
  FormWindow* TopWindow() const { return windows_.empty() ? nullptr : windows_.back(); }
  MessageDialog* open_box() const { return box_; }
  SearchDialog* open_search() const { return search_; }
  ManualWindow* open_manual() const { return manual_; }
  // Throws what the last action's handler threw, once.
  void RethrowError();
  // Everything open as the operator sees it; a null picture when nothing is.
  QPixmap Picture() const;

 private:
  class Shown;
  void DressUp(QWidget& window) const;
  void Open(QWidget& window);
  void BackFrom(QWidget& window);
  void Wait(const std::function<bool()>& done);
  void ShowError(const std::exception& error);
  QWidget* Uppermost() const;

  const Dress dress_;
  NoticeBoard notices_{[this] { Refresh(); }};
  ui::Engine engine_;
  WindowMemory memory_;
  ui::Driver* driver_ = nullptr;
  QWidget* host_window_ = nullptr;
  std::vector<FormWindow*> windows_;
  MessageDialog* box_ = nullptr;
  SearchDialog* search_ = nullptr;
  std::unique_ptr<ProgressDialog> progress_;  // while it is shown no form hears or reads anything
  QPointer<ManualWindow> manual_;  // goes with the screen that it stands over
  std::exception_ptr error_;
  bool killed_ = false;  // and what is open has still to hear of it
};

// Writes a picture as a small PNG: 256 colours are enough for a window. False when
// there is none or it cannot be written.
bool SavePicture(const QPixmap& picture, const std::string& path);

}  // namespace tpv::qt
