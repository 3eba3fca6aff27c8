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

#include "base/variant.h"
#include "platform/ui/entries.h"

namespace tpv {
class Recordset;
}

namespace tpv::ui {

class Form;
struct Frame;

enum class Align { Left, Right, Centre };

// How much a control asks for the eye: Strong is the figure to read from afar or
// the command that goes on, Warning what gives something up.
enum class Emphasis { Normal, Strong, Warning };

struct Control {
  // Registers itself with the form, which must outlive it.
  Control(Form& owner, std::string control_name);
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  Form& form;
  std::string name;     // as the screens name it: "Text1(8)", "cmdNueva"
  std::string caption;  // a button's or frame's own text; a field's label
  char32_t access_key = 0;  // where the caption marks none; 0 for none
  std::string tag;
  bool enabled = true;
  bool visible = true;
  bool tab_stop = true;
  Frame* frame = nullptr;  // the frame it stands in, set by the layout
  int columns = 0;         // preferred width in characters; 0: the front end's choice
  Emphasis emphasis = Emphasis::Normal;
  bool stretch = false;    // takes the room that its row has left

  // Runs when the control gets or loses the focus.
  std::function<void()> entered;
  std::function<void()> left;

  // Whether it and every frame around it is enabled (visible).
  bool IsEnabled() const;
  bool IsVisible() const;
  // Whether the Tab key can stop here.
  virtual bool CanFocus() const { return false; }
  // The rows of controls inside a frame; null for all others.
  virtual const std::vector<std::vector<Control*>>* Inside() const { return nullptr; }
  // Takes back a selection that a handler's change has left behind the text's end.
  virtual void ClampSelection() {}
};

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
};

struct CheckBox : Control {
  CheckBox(Form& owner, std::string control_name, std::string text = {}, bool on = false);
  bool checked = false;
  std::function<void()> click;  // after the mark changed
  bool CanFocus() const override { return true; }
};

// One of a group: the option buttons of the same frame (or of the form).
struct OptionButton : Control {
  OptionButton(Form& owner, std::string control_name, std::string text = {});
  bool checked = false;
  std::function<void()> click;
  // Checks it and unchecks the others of its group; runs no handler.
  void Check();
  bool CanFocus() const override { return true; }
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

struct GridColumn {
  std::string caption;
  std::string mask;
  int width = 0;  // twips; 0: the front end's choice
  Align align = Align::Left;
  bool hidden = false;
  bool cell_button = false;
};

// A grid over the rows of a record set, read whole when bound.
struct Grid : Control {
  using Control::Control;

  std::vector<std::string> fields;  // column names of the statement
  std::vector<GridColumn> layout;   // one a field
  std::vector<std::vector<Variant>> rows;
  int current_row = -1;
  bool read_only = false;
  std::function<void(int row, int column)> cell_button;

  // Takes all rows; missing layout columns show under the field's own name.
  void Bind(Recordset& rows_to_show, std::vector<GridColumn> columns_to_show);
  // The same list read again: keeps the operator's place in it (see PlaceAmong).
  void BindAgain(Recordset& rows_to_show, std::vector<GridColumn> columns_to_show,
                 std::string_view key_field);
  void Clear();
  int Column(std::string_view field) const;  // throws std::out_of_range for an unknown field
  const Variant& Value(int row, std::string_view field) const;
  std::string Cell(int row, int column) const;  // as displayed
  bool CanFocus() const override { return true; }
};

// The current row of a list that was read again: a row that came in is marked;
// otherwise the mark stays where it was. Keys tell the rows; -1 when there are none.
int PlaceAmong(const std::vector<std::int32_t>& before, int row, const std::vector<std::int32_t>& now);

struct ListItem {
  std::vector<std::string> cells;  // first the item's text, then its sub-items
  bool checked = false;
  std::int32_t tag = 0;
};

struct ListView : Control {
  using Control::Control;

  std::vector<GridColumn> layout;
  bool check_boxes = false;
  std::vector<ListItem> items;
  int current_row = -1;
  std::function<void(int row)> selected;
  std::function<void(int row)> checked;  // after the mark changed
  bool CanFocus() const override { return true; }
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
