// What every control of a form has.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tpv::ui {

class Form;
struct Frame;
struct List;

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
  // A button or a mark: a key or a click on it does something at once.
  virtual bool IsPressed() const { return false; }
  virtual List* AsList() { return nullptr; }
  // Takes back a selection that a handler's change has left behind the text's end.
  virtual void ClampSelection() {}
};

}  // namespace tpv::ui
