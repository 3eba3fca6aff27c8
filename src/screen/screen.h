// What every screen does the same way: toolkit and focus colours, the
// pending-message mark, Enter to the next field, Escape, F1 by tag, select-all
// on entering, date fields, "message, then focus back".
#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "context/context.h"
#include "platform/ui/form.h"
#include "platform/ui/front_end.h"

namespace tpv {

class Screen : public ui::Form {
 public:
  Screen(Context& context, std::string form_name);

  void OnLoad() override;  // creates the toolkit; a screen's own OnLoad calls it first
  bool OnKeyDown(ui::Key key) override;
  void OnKeyUp(ui::Key key) override;
  char32_t OnCharacter(ui::TextBox& box, char32_t character) override;
  void OnEnter(ui::Control& control) override;
  void OnLeave(ui::Control& control) override;
  // The Enter that closes a box does not also move the focus, and the next one does.
  void OnBoxClosedByKey() override { pending_message.clear(); }
  void OnScanRefused(const std::string& code) override;
  void OnScanUnanswered() override;
  bool GivesListsAway() const override { return true; }
  void ExportList(ui::List& list, const std::string& path) override;
  void PrintList(ui::List& list, ui::ListPaper paper) override;

 protected:
  Context& context() const { return context_; }
  Connection& Database() const { return context_.Database(); }
  FormToolkit& toolkit() const { return *toolkit_; }
  Variant Parameter(std::string_view parameter) const {
    return context_.Parameter(parameter);
  }

  // --- messages -----------------------------------------------------------
  // Shows a box with OK alone and, when given, asks for the focus there.
  void Message(std::string text, ui::Icon icon = ui::Icon::None, std::string title = {});
  // A failed check: sets the pending-message mark, shows the box, then focuses.
  void Refuse(std::string text, ui::Control* focus_back, ui::Icon icon = ui::Icon::None,
              std::string title = {});
  ui::Answer Ask(std::string text, ui::Icon icon, ui::Answer default_button,
                 bool with_cancel = false, std::string title = {});
  bool Confirm(std::string text, ui::Icon icon, ui::Answer default_button = ui::Answer::Yes) {
    return Ask(std::move(text), icon, default_button) == ui::Answer::Yes;
  }

  // Work that may take longer than a moment, under that title. False when the operator
  // gave it up: what it had begun to show is then the caller's to take back.
  bool Finishes(const std::string& title, const std::function<void(ui::LongWork&)>& work);

  // --- keys, by role ------------------------------------------------------
  virtual void OnEscape() { Close(); }
  virtual void OnF1(std::string_view /*tag*/) { ShowManual(); }
  virtual void OnF5() {}
  // Before a key acts on the whole screen: the field with the focus is left, so that
  // its look-up runs, and entered again. False when the field wants something first.
  bool LeaveField();
  // The manual's page of this screen: for F1 where it searches nothing.
  void ShowManual();
  // Moves the focus as Tab does when the running event ends.
  void SendTab();

  // The mark that keeps the Enter which closes a box from moving the focus.
  std::string pending_message;

  // --- fields -------------------------------------------------------------
  // Date fields lose their "/" on entering and show "dd/mm/yyyy" on leaving.
  void MakeDateField(ui::TextBox& box);
  // Whether the text is a date "dd/mm/yyyy".
  static bool IsDate(std::string_view text);
  // Whether the field holds a date; otherwise refuses with the text.
  bool RequireDate(ui::TextBox& box, const char* refusal);
  // Whether each of the date fields is empty or a date; the first that is
  // neither is refused.
  bool CheckDates(std::initializer_list<ui::TextBox*> boxes);
  // Whole-number and amount readings of a field; 0 when empty or not a number.
  static double Number(const ui::TextBox& box);

 private:
  ui::Answer Show(const ui::MessageBox& box);

  Context& context_;
  std::unique_ptr<FormToolkit> toolkit_;
};

}  // namespace tpv
