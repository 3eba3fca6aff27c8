// The operator of the real windows: keys and clicks on the widgets, and a look
// after each whether the windows show what the forms say.
#pragma once

#include "adapters/qt/qt_front_end.h"
#include "platform/ui/operator.h"

class QComboBox;
class QMenu;

namespace tpv::qt {

class RowsView;

class QtOperator : public ui::Operator {
 public:
  explicit QtOperator(QtFrontEnd& front_end) : front_end_(front_end) {}

  ui::Form* Top() override { return front_end_.Top(); }
  const ui::MessageBox* Box() override;
  bool HasSearch() override { return front_end_.open_search() != nullptr; }
  std::string Notices() override { return front_end_.Notices().Text(); }

  void Focus(ui::Control& control) override;
  void Type(std::string_view text) override;
  void Clear() override;
  void Press(ui::Key key) override;
  void Scan(std::string_view code) override;
  void Click(ui::Control& control) override;
  void Select(ui::Control& control, const std::string& row_or_entry) override;
  void Tick(ui::Control& control, int row, bool on) override;
  void CellButton(ui::Control& control, int row, int column) override;
  void Sort(ui::List& list, int column) override;
  void OpenListMenu(ui::List& list) override;
  void ChooseMenu(std::string_view entry) override;
  void Close() override;

  void Answer(ui::Answer answer) override;
  std::vector<std::string> Matches() override;
  void Find(std::string_view text) override;
  void SortMatches(std::size_t column) override;
  void ChooseSearchMenu(std::string_view entry) override;
  void ExportMatches(const std::string& path) override;
  void PickRow(std::size_t visible_row) override;
  void PickText(std::string_view text) override;
  void PickNone() override;

 private:
  ControlView& Usable(const ui::Control& control);
  RowsView& Rows(ui::Control& control);
  void SelectEntry(ui::ComboBox& combo, const std::string& entry);
  void ChooseIn(QMenu* menu, std::string_view entry);
  void Strike(const std::function<void()>& stroke);
  void Begin();
  void Done();

  QtFrontEnd& front_end_;
  quint64 scans_ = 0;
};

}  // namespace tpv::qt
