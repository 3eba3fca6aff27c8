// The controls of a form as plain data. A handler changes a member; the front
// end compares model and window after each event and repaints what differs.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/chart.h"
#include "platform/ui/control.h"
#include "platform/ui/entries.h"
#include "platform/ui/lists.h"

namespace tpv::ui {

// What a text box lets the operator type.
enum class Input { Any, Number, Date };

struct TextBox : Control {
  using Control::Control;

  std::string text;
  int max_length = 0;  // characters; 0: no limit
  Input input = Input::Any;
  Align align = Align::Left;
  bool locked = false;  // shown, can have the focus, cannot be typed into
  bool large = false;   // larger bold type: totals, initial amount
  bool secret = false;  // a password: nobody reads what is typed
  std::uint32_t back_colour = 16777215;  // 0xBBGGRR
  // Selection in characters; typing replaces it.
  std::size_t selection_start = 0;
  std::size_t selection_length = 0;

  void SelectAll();
  bool CanFocus() const override { return true; }
  void ClampSelection() override;
};

// Text boxes by index; not every index exists.
class TextBoxes {
 public:
  TextBoxes(Form& form, std::string name) : form_(form), name_(std::move(name)) {}
  // Creates the box on first use of its index.
  TextBox& Add(int index, std::string caption = {});
  TextBox& operator[](int index) { return *boxes_.at(index); }
  const TextBox& operator[](int index) const { return *boxes_.at(index); }
  auto begin() { return boxes_.begin(); }
  auto end() { return boxes_.end(); }

 private:
  Form& form_;
  std::string name_;
  std::map<int, std::unique_ptr<TextBox>> boxes_;
};

struct Label : Control {
  Label(Form& owner, std::string control_name, std::string text = {});
  bool large = false;
  int lines = 0;  // room kept for a text that comes and goes; 0: what it needs
};

struct Button : Control {
  // `&` in the caption marks the access key.
  Button(Form& owner, std::string control_name, std::string text = {});
  std::string heading;  // stands before the caption: what the command is about
  std::function<void()> click;
  bool CanFocus() const override { return true; }
  bool IsPressed() const override { return true; }
};

struct CheckBox : Control {
  CheckBox(Form& owner, std::string control_name, std::string text = {}, bool on = false);
  bool checked = false;
  std::function<void()> click;  // after the mark changed
  bool CanFocus() const override { return true; }
  bool IsPressed() const override { return true; }
};

// One of a group: the option buttons of the same frame (or of the form).
struct OptionButton : Control {
  OptionButton(Form& owner, std::string control_name, std::string text = {});
  bool checked = false;
  std::function<void()> click;
  // Checks it and unchecks the others of its group; runs no handler.
  void Check();
  bool CanFocus() const override { return true; }
  bool IsPressed() const override { return true; }
};

struct ComboBox : Control {
  ComboBox(Form& owner, std::string control_name, std::string label = {});
  Entries items;
  int index = -1;  // -1: nothing selected
  std::function<void()> changed;

  std::string Text() const;
  // Shows other entries, the first of them selected.
  void Offer(Entries entries);
  // The first entry that `matches`, if any, becomes the selected one.
  void SelectIf(const std::function<bool(std::string_view)>& matches);
  bool CanFocus() const override { return true; }
};

// A picture of figures; nobody types or clicks there.
struct Chart : Control {
  using Control::Control;
  ChartData data;
};

struct MenuEntry {
  std::string name;
  std::string caption;
  std::function<void()> click;
};

// A context menu; opened through Form::OpenMenu.
struct Menu : Control {
  using Control::Control;
  std::vector<MenuEntry> entries;
};

// A framed group of controls, laid out in rows from top to bottom. A disabled
// frame disables what stands in it.
struct Frame : Control {
  Frame(Form& owner, std::string control_name, std::string text = {});
  std::vector<std::vector<Control*>> rows;
  const std::vector<std::vector<Control*>>* Inside() const override { return &rows; }
  // Sets the layout and makes this the frame of those controls.
  void Rows(std::vector<std::vector<Control*>> layout_rows);
};

}  // namespace tpv::ui
