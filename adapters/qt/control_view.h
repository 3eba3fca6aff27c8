// One control of a form as widgets: what stands in the window, what takes the
// focus, and bringing both to what the model says.
#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "adapters/qt/window_memory.h"
#include "screen/engine.h"

class QKeyEvent;

namespace tpv::qt {

// Runs what a native event asks of the engine, then repaints what changed.
// Errors stay inside: no exception may pass through Qt.
class Actions {
 public:
  virtual ~Actions() = default;
  virtual void Act(const std::function<void(ui::Engine&)>& action) = 0;
  virtual WindowMemory& Memory() = 0;
};

class ControlView {
 public:
  explicit ControlView(ui::Control& shown) : control(shown) {}
  virtual ~ControlView() = default;
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;

  ui::Control& control;

  virtual QWidget* Outer() = 0;                       // stands in the layout
  virtual QWidget* Target() { return Outer(); }       // takes focus and events
  // Where a mouse moves the focus without doing more.
  virtual QWidget* Surface() { return Target(); }
  virtual void Sync();
  // Native events of target and surface, before they see them; true swallows.
  virtual bool Filter(QObject*, QEvent&) { return false; }
  // Whether the control's own widget takes this key (caret, selection, pages).
  virtual bool TakesKey(const QKeyEvent&) { return false; }
  // What the widget shows, as a scenario would print the model's; "" for none.
  virtual std::string Shown() const { return {}; }
  virtual std::string Expected() const { return {}; }
  // Where on the screen a menu about it opens; null: where the mouse is.
  virtual QPoint MenuPoint() { return {}; }
  // Whether the window is taller for it: grids, lists and charts.
  virtual bool Tall() const { return false; }

 protected:
  // Whether the caption or its access key is another than when last asked.
  bool HasNewCaption();

 private:
  std::optional<std::string> caption_;  // as last asked
  char32_t access_key_ = 0;
};

// Where a view's widgets come to life and send what happens to them.
struct Surroundings {
  Actions& actions;
  QWidget& parent;
};

std::unique_ptr<ControlView> MakeFieldView(ui::TextBox& box, Surroundings around);
std::unique_ptr<ControlView> MakeLabelView(ui::Label& label, Surroundings around);
std::unique_ptr<ControlView> MakeButtonView(ui::Button& button, Surroundings around);
std::unique_ptr<ControlView> MakeCheckView(ui::CheckBox& check, Surroundings around);
std::unique_ptr<ControlView> MakeOptionView(ui::OptionButton& option, Surroundings around);
std::unique_ptr<ControlView> MakeComboView(ui::ComboBox& combo, Surroundings around);
std::unique_ptr<ControlView> MakeGridView(ui::Grid& grid, Surroundings around);
std::unique_ptr<ControlView> MakeChartView(ui::Chart& chart, Surroundings around);
std::unique_ptr<ControlView> MakeListView(ui::ListView& list, Surroundings around);

}  // namespace tpv::qt
