// An operator without sense, but with a few habits that lead somewhere: types, clicks, scans, presses keys and answers at
// random on every screen, the same way for the same seed. What it does is
// written as a scenario, so that a finding can be played again and cut short.
#pragma once

#include <iosfwd>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "host/recorded_till.h"
#include "platform/ui/operator.h"
#include "tests/torture/hostile_text.h"

namespace tpv::torture {

// A text as a scenario's word in double quotes.
std::string QuotedWord(std::string_view text);

class Monkey : public ui::Driver {
 public:
  // All references outlive the monkey. `script` gets what it does, as a scenario.
  Monkey(RecordedTill& till, ui::Operator& hands, std::ostream& script, std::uint64_t seed);

  // Opens screen after screen until so many actions are done.
  void Work(long actions);
  // What should not have happened: errors that reached the host, forms in an
  // impossible state, a store that does not hold together.
  const std::vector<std::string>& findings() const { return findings_; }

  bool Step() override;
  void OnBox(const ui::MessageBox&) override {}

 private:
  using Act = void (Monkey::*)();

  void Call();
  void ActOnScreen(ui::Form& form);
  void ActOnSearch();
  void AnswerBox();
  void UseSomething();
  void Scan();
  void TypeText();
  void EnterText();
  void Enter(ui::Control& control, const std::string& text);
  void PressKey();
  void UseRows();
  void ChooseMenu();
  void Close();
  void MoveClock();
  void BreakSomething();
  void RememberHabit();
  bool FollowHabit();

  template <typename Action>
  void Do(const std::string& command, Action action);
  void CheckForm();
  void CheckStoreNow();
  void Report(const std::string& what);

  std::size_t Roll(std::size_t sides) { return dice_() % sides; }
  template <typename List>
  const auto& Any(const List& list) {
    return list[Roll(std::size(list))];
  }
  std::string AnyText(const ui::Control* control);
  ui::Control* AnyControl();

  RecordedTill& till_;
  ui::Operator& hands_;
  std::ostream& script_;
  std::mt19937_64 dice_;
  long left_ = 0;
  std::vector<std::string> habit_;  // what is left of it, the next step last
  std::string habit_form_;
  std::vector<std::string> findings_;
  std::vector<std::string> hostile_ = HostileTexts();
};

}  // namespace tpv::torture
