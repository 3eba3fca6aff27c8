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

#include "base/date_time.h"
#include "platform/ui/form.h"
#include "screen/scan_burst.h"

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

  // Of all forms, open or to come.
  void SetBanner(std::string_view banner);
  const std::string& banner() const { return banner_; }

  Form* Top() const { return forms_.empty() ? nullptr : forms_.back(); }
  std::size_t Depth() const { return forms_.size(); }

  // Every action below works on the top form, throws ActionRefused when it is
  // not possible, and lets an error of a handler through after settling the
  // focus; the form stays open then.
  void FocusOn(Control& control);           // as a mouse click does
  // Through OnCharacter and the box's limits. With their moments, the characters
  // and the Enter of a scanner are known as such: what stood in the focused control
  // before them stays, and the code goes to the form's field for scans.
  void TypeCharacter(char32_t character, KeyMoment when = {});
  void ClearText();                         // select all, the Delete key
  void KeyDown(Key key, KeyMoment when = {});
  void KeyUp(Key key);
  void PressKey(Key key, KeyMoment when = {});                   // down and up, the release lost to what opened
  void Scan(std::string_view code);         // a scanner's keys
  void Click(Control& control);             // button, check box, option button
  void AccessKey(char32_t letter);          // Alt and a caption's & letter
  // Rows of grids and list views are named by their places, as they stand in sight.
  void SelectRow(Control& control, int row);             // grid, list view, combo entry
  void SelectEntry(ComboBox& combo, std::string_view text);  // equals or begins with it
  void SetCheck(ListView& list, int row, bool checked);
  void CellButton(Grid& grid, int row, int column);
  // The operator's look at a list: by a column, once more the other way round, and a
  // third time as the screen put the rows.
  void SortBy(List& list, int column);
  void Narrow(List& list, std::string_view words);
  void OpenListMenu(List& list);
  void ChooseMenu(std::string_view entry);
  // The day of the calendar that is open, typed in place of what its field holds.
  void ChooseDay(const DateTime& day);
  void CloseBox();

  // Boxes, dialogs and forms that opened since the start; a key whose press
  // opened something is released there and never reaches the form.
  void CountOpening() { ++openings_; }
  std::size_t Openings() const { return openings_; }
  // A box or dialog closed: when it was by a key, the form below hears of it as
  // its event ends.
  void BoxClosed(bool by_key) { box_closed_by_key_ = by_key; }

  // What tells a scanner's keys, also for a box or dialog that takes its keys itself.
  ScanBurst& Burst() { return burst_; }
  // A code was scanned over a box or a dialog that nobody has answered.
  void ScanUnanswered();

 private:
  void Settle(Form& form);
  template <typename Handler>
  void Run(Form& form, Handler handler);
  void RememberFocus(const Form& form);
  void RestoreFocus();
  bool TakeLineEnd(Form& form, KeyMoment when);
  void EnterScanned(Form& form, const std::string& code);
  void DefaultKey(Form& form, Key key);
  void TypeKeypad(Form& form, TextBox& box, char32_t character);
  void MoveRow(Control& control, int step);
  void PressSpace(Control& control);
  bool TypeIntoList(char32_t character);
  bool ForgetFilter(Key key);
  void FindEntry(ComboBox& combo, char32_t character);

  // What a scanner's characters may have changed before they were known as such.
  struct Touched {
    Control* control = nullptr;
    std::string text;
    std::size_t selection_start = 0;
    std::size_t selection_length = 0;
    int index = -1;
  };

  std::vector<Form*> forms_;
  std::string banner_;
  std::size_t openings_ = 0;
  bool box_closed_by_key_ = false;
  ScanBurst burst_;
  Touched touched_;
  std::int64_t scans_ = 0;
};

}  // namespace tpv::ui
