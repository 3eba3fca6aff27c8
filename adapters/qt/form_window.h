// A screen's window: the widgets of its declared layout, its keyboard, and its
// repainting. It decides nothing; the engine does.
#pragma once

#include <QWidget>
#include <map>
#include <string>

#include "adapters/qt/form_layout.h"
#include "adapters/qt/notice_band.h"
#include "adapters/qt/notice_board.h"
#include "adapters/qt/status_band.h"

class QMenu;
class QScrollArea;

namespace tpv::qt {

class CalendarPopup;

// What a window tells the front end besides its actions.
class WindowOwner : public Actions {
 public:
  // Whether the form may hear of native events now: on top, nothing over it.
  virtual bool Listens(const ui::Form& form) const = 0;
  virtual NoticeBoard& Notices() = 0;
};

class FormWindow : public QWidget {
 public:
  FormWindow(ui::Form& form, WindowOwner& owner, QWidget* parent);
  ~FormWindow() override;

  ui::Form& form() { return form_; }
  // Brings everything shown to what the model says.
  void Sync();
  ControlView* ViewOf(const ui::Control& control) const;
  QMenu* menu() const { return menu_; }
  CalendarPopup* calendar() const { return calendar_; }
  // As large as it needs; a window with a grid or a list takes the usual size.
  QSize PreferredSize(const QSize& room) const;
  void FlashBand() { band_->Flash(); }
  void Reveal(const ControlView& view);  // scrolls to it where the window is small
  // What the window shows differently from the model or cuts off; "" when nothing.
  std::string Difference() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void Watch(QWidget& widget, ControlView& view);
  void SyncGround();
  void SyncFocus();
  void SyncMenu();
  void SyncCalendar();
  bool Press(QKeyEvent& event, ControlView* view);
  void Release(QKeyEvent& event);
  void PressKey(ui::Key key, int code, ui::KeyMoment when);
  void TypeText(const QString& text, ui::KeyMoment when = {});
  void PasteOrCut(const QKeyEvent& event);

  ui::Form& form_;
  WindowOwner& owner_;
  StatusBand* band_;
  NoticeBand* notices_;
  QScrollArea* scroll_;
  Views views_;
  std::map<QObject*, ControlView*> watched_;
  std::map<int, std::size_t> held_;  // keys down, with the engine's openings before them
  QMenu* menu_ = nullptr;
  CalendarPopup* calendar_ = nullptr;
  bool wait_cursor_ = false;
};

}  // namespace tpv::qt
