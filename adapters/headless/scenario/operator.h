// The operator's hands on the top screen, box or dialog.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/ui/form.h"
#include "platform/ui/front_end.h"

namespace tpv::scenario {

// Actions that cannot be done throw ui::ActionRefused; errors of handlers pass.
class Operator {
 public:
  virtual ~Operator() = default;

  virtual ui::Form* Top() = 0;
  virtual const ui::MessageBox* Box() = 0;
  virtual bool HasSearch() = 0;

  virtual void Focus(ui::Control& control) = 0;
  virtual void Type(std::string_view text) = 0;
  virtual void Clear() = 0;
  virtual void Press(ui::Key key) = 0;
  virtual void Click(ui::Control& control) = 0;
  virtual void Select(ui::Control& control, const std::string& row_or_entry) = 0;
  virtual void Tick(ui::Control& control, int row, bool on) = 0;
  virtual void CellButton(ui::Control& control, int row, int column) = 0;
  virtual void ChooseMenu(std::string_view entry) = 0;
  virtual void Close() = 0;

  virtual void Answer(ui::Answer answer) = 0;
  virtual void Find(std::string_view text) = 0;
  virtual void PickRow(std::size_t visible_row) = 0;
  virtual void PickText(std::string_view text) = 0;
  virtual void PickNone() = 0;
};

}  // namespace tpv::scenario
