// The operator of the front end without windows: straight to the engine.
#pragma once

#include "adapters/headless/headless_front_end.h"

namespace tpv::scenario {

class HeadlessOperator : public ui::Operator {
 public:
  explicit HeadlessOperator(HeadlessFrontEnd& front_end) : front_end_(front_end) {}

  ui::Form* Top() override { return engine().Top(); }
  const ui::MessageBox* Box() override { return front_end_.open_box(); }
  bool HasSearch() override { return front_end_.open_search() != nullptr; }
  std::string Notices() override { return front_end_.NoticesText(); }

  void Focus(ui::Control& control) override { engine().FocusOn(control); }
  void Type(std::string_view text) override;
  void Clear() override { engine().ClearText(); }
  void Press(ui::Key key) override { engine().PressKey(key); }
  void Scan(std::string_view code) override;
  void Click(ui::Control& control) override;
  void Select(ui::Control& control, const std::string& row_or_entry) override;
  void Tick(ui::Control& control, int row, bool on) override;
  void CellButton(ui::Control& control, int row, int column) override;
  void Sort(ui::List& list, int column) override { engine().SortBy(list, column); }
  void OpenListMenu(ui::List& list) override { engine().OpenListMenu(list); }
  void ChooseMenu(std::string_view entry) override { engine().ChooseMenu(entry); }
  void Close() override { engine().CloseBox(); }

  void Answer(ui::Answer answer) override { front_end_.AnswerBox(answer); }
  std::vector<std::string> Matches() override;
  void Find(std::string_view text) override { front_end_.Narrow(text); }
  void SortMatches(std::size_t column) override { front_end_.open_search()->SortBy(column); }
  void ChooseSearchMenu(std::string_view entry) override { front_end_.ChooseSearchMenu(entry); }
  void ExportMatches(const std::string& path) override { front_end_.ExportMatches(path); }
  void PickRow(std::size_t visible_row) override;
  void PickText(std::string_view text) override;
  void PickNone() override { front_end_.CloseSearch(std::nullopt); }

 private:
  ui::Engine& engine() { return front_end_.engine(); }

  HeadlessFrontEnd& front_end_;
};

}  // namespace tpv::scenario
