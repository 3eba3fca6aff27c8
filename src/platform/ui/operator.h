// Who works a front end when no person does: the hands on the top screen, box or
// dialog, and the driver that whatever is on top asks for the next action.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui/form.h"
#include "platform/ui/front_end.h"

namespace tpv::ui {

// Thrown by a driver whose till is killed: everything open goes, and no handler
// runs on the way. No std::exception, so that nobody takes it for an error to report.
struct TillKilled {};

// Gives the operator's actions, one a call.
class Driver {
 public:
  virtual ~Driver() = default;
  // False when there are no more: what is open then closes by itself.
  virtual bool Step() = 0;
  virtual void OnBox(const MessageBox& box) = 0;
  // Whether long work is given up where it stands.
  virtual bool GivesUp(const Progress& /*progress*/) { return false; }
};

// Actions that cannot be done throw ActionRefused; errors of handlers pass.
class Operator {
 public:
  virtual ~Operator() = default;

  virtual Form* Top() = 0;
  virtual const MessageBox* Box() = 0;
  virtual bool HasSearch() = 0;
  // What the operator has been told and not put away, one a line.
  virtual std::string Notices() = 0;

  virtual void Focus(Control& control) = 0;
  virtual void Type(std::string_view text) = 0;
  virtual void Clear() = 0;
  virtual void Press(Key key) = 0;
  // The keystrokes of a bar-code scanner, Enter last, for whatever is on top.
  virtual void Scan(std::string_view code) = 0;
  virtual void Click(Control& control) = 0;
  virtual void Select(Control& control, const std::string& row_or_entry) = 0;
  virtual void Tick(Control& control, int row, bool on) = 0;
  virtual void CellButton(Control& control, int row, int column) = 0;
  // A click on a column's heading; a list's own menu.
  virtual void Sort(List& list, int column) = 0;
  virtual void OpenListMenu(List& list) = 0;
  virtual void ChooseMenu(std::string_view entry) = 0;
  virtual void Close() = 0;

  virtual void Answer(ui::Answer answer) = 0;
  // The rows that the search dialog shows, their columns joined by " | ".
  virtual std::vector<std::string> Matches() = 0;
  virtual void Find(std::string_view text) = 0;
  virtual void SortMatches(std::size_t column) = 0;
  // An entry of the search's own menu; its rows as a file.
  virtual void ChooseSearchMenu(std::string_view entry) = 0;
  virtual void ExportMatches(const std::string& path) = 0;
  virtual void PickRow(std::size_t visible_row) = 0;
  virtual void PickText(std::string_view text) = 0;
  virtual void PickNone() = 0;
};

}  // namespace tpv::ui
