// What the windows of a shop that is not open yet, and of the machine, do alike:
// Enter to the next field, Escape, F1, messages.
#pragma once

#include <string>

#include "office/refusal.h"
#include "platform/ui/form.h"
#include "platform/ui/front_end.h"

namespace tpv::office {

class Window : public ui::Form {
 public:
  // The front end outlives the window.
  Window(ui::FrontEnd& front_end, std::string form_name);

  void OnKeyUp(ui::Key key) override;
  void OnEnter(ui::Control& control) override;

 protected:
  ui::FrontEnd& front_end() const { return front_end_; }
  virtual void OnEscape() { Close(); }

  void Tell(const std::string& text, ui::Icon icon = ui::Icon::Information);
  // Tells what is wrong and asks for the focus there.
  void Refuse(const std::string& text, ui::Control& control);
  bool Confirm(const std::string& text);
  // Shows the progress of long work at once.
  void ShowNow() { front_end_.ProcessEvents(); }

  // A row of buttons that share the room.
  static void Spread(ui::Frame& frame);

 private:
  ui::Answer Show(const std::string& text, ui::Icon icon, bool question);

  ui::FrontEnd& front_end_;
};

}  // namespace tpv::office
