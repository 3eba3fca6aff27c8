// The event engine that every front end drives: it owns the focus, the tab
// order, leaving before entering, keys to the screen before the field, key
// filters, clicks and modal nesting. A front end turns native events into calls
// of the engine and paints what the forms say.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/form.h"

namespace tpv::ui {

// An operator's action that the top form does not allow (a disabled control, no
// such control, nothing to type into). The text says what and why.
class ActionRefused : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Engine {
 public:
  // Runs OnLoad once. An error goes to the caller.
  void Load(Form& form);
  // Puts the form on top, gives it its first focus and its first activation.
  void Open(Form& form);
  // Runs OnUnload and takes the form (the top one) off.
  void Unload(Form& form);
  // Takes it off alone: the program that shows it is being killed.
  void Drop(Form& form);

  Form* Top() const { return forms_.empty() ? nullptr : forms_.back(); }
  std::size_t Depth() const { return forms_.size(); }

  // Every action below works on the top form, throws ActionRefused when it is
  // not possible, and lets an error of a handler through after settling the
  // focus; the form stays open then.
  void FocusOn(Control& control);           // as a mouse click does
  void TypeCharacter(char32_t character);   // through OnCharacter and the box's limits
  void ClearText();                         // select all, the Delete key
  void KeyDown(Key key);
  void KeyUp(Key key);
  void PressKey(Key key);                   // down and up, the release lost to what opened
  void Click(Control& control);             // button, check box, option button
  void AccessKey(char32_t letter);          // Alt and a caption's & letter
  void SelectRow(Control& control, int row);             // grid, list view, combo entry
  void SelectEntry(ComboBox& combo, std::string_view text);  // equals or begins with it
  void SetCheck(ListView& list, int row, bool checked);
  void CellButton(Grid& grid, int row, int column);
  void ChooseMenu(std::string_view entry);
  void CloseBox();

  // Boxes, dialogs and forms that opened since the start; a key whose press
  // opened something is released there and never reaches the form.
  void CountOpening() { ++openings_; }
  std::size_t Openings() const { return openings_; }
  // A box or dialog closed: when it was by a key, the form below hears of it as
  // its event ends.
  void BoxClosed(bool by_key) { box_closed_by_key_ = by_key; }

 private:
  void Settle(Form& form);
  template <typename Handler>
  void Run(Form& form, Handler handler);
  void DefaultKey(Form& form, Key key);
  void TypeKeypad(Form& form, TextBox& box, char32_t character);
  void MoveRow(Control& control, int step);
  void PressSpace(Control& control);
  void FindEntry(ComboBox& combo, char32_t character);

  std::vector<Form*> forms_;
  std::size_t openings_ = 0;
  bool box_closed_by_key_ = false;
};

}  // namespace tpv::ui
