// A form: its controls, their layout, and the handlers a screen overrides.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/controls.h"

namespace tpv::ui {

enum class Key { Enter, Tab, BackTab, Esc, F1, F4, F5, F8, Add, Subtract, Up, Down, Delete, Backspace, Other };

// One fact of the till that is to be seen at a glance.
struct StatusItem {
  enum class Tone { Neutral, Good, Missing };
  std::string label;
  std::string text;
  Tone tone = Tone::Neutral;
  bool large = false;  // to be read from where the customer stands
  Key opens = Key::Other;  // the key that a click on it stands for; Other: none
};

enum class ListPaper { Printer, Pdf };

class Form {
 public:
  explicit Form(std::string form_name) : name(std::move(form_name)) {}
  virtual ~Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  std::string name;     // "frmTpv"
  std::string caption;  // window title
  std::string banner;   // what nobody may overlook in any window; the engine keeps it
  // The caption behind the banner.
  std::string Title() const { return Titled(banner, caption); }
  static std::string Titled(const std::string& banner, const std::string& caption);
  std::vector<std::vector<Control*>> rows;  // the declared layout, top to bottom

  // By name regardless of case; null when there is none.
  Control* Find(std::string_view control_name) const;
  const std::vector<Control*>& Controls() const { return controls_; }  // in order of creation
  // Controls in layout order (reading order), frames opened up.
  std::vector<Control*> InLayoutOrder() const;

  // The focus. SetFocus asks for it; the engine moves it (leave, then enter)
  // before the event that asked for it ends. Asking for a control that cannot
  // have it changes nothing.
  Control* focus = nullptr;
  void SetFocus(Control& control) { requested_focus = &control; }
  Control* requested_focus = nullptr;
  // Asks the engine to move the focus to the next field when the event ends.
  bool tab_sent = false;

  // Asks the engine to close the form when the running event ends.
  void Close() { closing = true; }
  bool closing = false;
  bool loaded = false;     // OnLoad has run
  bool activated = false;  // OnFirstActivate has run
  bool wait_cursor = false;
  bool warning = false;    // the operator must not take it for another: marked in red
  bool maximised = false;  // takes the whole screen when it opens

  void OpenMenu(Menu& menu) { open_menu = &menu; }
  Menu* open_menu = nullptr;

  std::unique_ptr<Menu> list_menu;  // of the list that was last asked for its own

  // The date field whose calendar the operator asked for; a front end without
  // windows has none to show.
  TextBox* open_calendar = nullptr;

  // Handlers. Keys reach the form before its fields; returning true from
  // OnKeyDown swallows the key.
  virtual void OnLoad() {}
  virtual void OnFirstActivate() {}
  virtual bool OnKeyDown(Key) { return false; }
  virtual void OnKeyUp(Key) {}
  // The character that goes into the box instead, 0 for none.
  virtual char32_t OnCharacter(TextBox&, char32_t character) { return character; }
  virtual void OnEnter(Control&) {}  // before the control's own `entered`
  virtual void OnLeave(Control&) {}  // before the control's own `left`
  virtual void OnUnload() {}
  // A key closed a message box or a dialog over this form; its release is no
  // key of the form's. Runs after the handler that showed the box.
  virtual void OnBoxClosedByKey() {}
  // The window's close box; may refuse by not calling Close.
  virtual void OnCloseBox() { Close(); }
  // Whether scanned codes belong to one field of the form, wherever the focus is.
  virtual bool TakesScans() const { return false; }
  // That field, ready for the code: what must be asked or done first is done. Null
  // when no code can be taken now; the operator was told.
  virtual TextBox* FieldForScan() { return nullptr; }
  // A scanned code that nothing on this form takes.
  virtual void OnScanRefused(const std::string& /*code*/) {}
  // A code was scanned while a box that must be answered stands over the form.
  virtual void OnScanUnanswered() {}
  // Whether lists can leave the form: as a file of a spreadsheet ("" asks which), on paper.
  virtual bool GivesListsAway() const { return false; }
  virtual void ExportList(List&, const std::string& /*path*/) {}
  virtual void PrintList(List&, ListPaper) {}
  bool scanning = false;  // a scanned code is being entered
  // Asked for after each event; shown where the operator sees it at once.
  virtual std::vector<StatusItem> Status() const { return {}; }
  // The banner, then the status.
  std::vector<StatusItem> Band() const;

 private:
  friend struct Control;
  std::vector<Control*> controls_;
};

// Shows the wait cursor while it lives, also when the work throws.
class WaitCursor {
 public:
  explicit WaitCursor(Form& form) : form_(form) { form_.wait_cursor = true; }
  ~WaitCursor() { form_.wait_cursor = false; }
  WaitCursor(const WaitCursor&) = delete;
  WaitCursor& operator=(const WaitCursor&) = delete;

 private:
  Form& form_;
};

}  // namespace tpv::ui
