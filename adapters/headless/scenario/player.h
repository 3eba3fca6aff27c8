// Plays a script: the host that calls the component, and the operator of
// whatever it opens.
#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "adapters/headless/scenario/rig.h"
#include "adapters/headless/scenario/script.h"
#include "platform/ui/operator.h"
#include "screen/engine.h"

namespace tpv::scenario {

// An expectation that did not hold, or an action that could not be done.
class Failure : public std::runtime_error {
 public:
  Failure(const std::string& text, bool fatal) : std::runtime_error(text), fatal_(fatal) {}
  // Whether what follows in the script makes no sense any more.
  bool fatal() const { return fatal_; }

 private:
  bool fatal_;
};

class Player : public ui::Driver {
 public:
  // All references outlive the player.
  Player(Rig& rig, ui::Operator& hands, std::ostream& transcript);

  // Whether no command is left to play.
  bool Over() const { return over_ || next_ >= commands_.size(); }
  // Plays the commands; true when every expectation held.
  bool Play(std::vector<Command> commands);

  // Throws TillKilled for a script that kills the till.
  bool Step() override;
  void OnBox(const ui::MessageBox& box) override;
  bool GivesUp(const ui::Progress& progress) override;

 private:
  bool StepOrStartAgain();
  void Run(const Command& command);
  void RunReported(const Command& command);
  void Dispatch(const Command& command);
  bool RunHostCommand(const Command& command);
  bool RunScreenCommand(const Command& command);
  void RequireNothingOpen(const Command& command);

  void Call(const Command& command);
  void Fails(const Command& command);
  void Sql(const Command& command);
  void Other(const Command& command);
  void Kill(const Command& command);
  void Config(const Command& command);
  void Office(const Command& command);
  void Start(const Command& command);
  void WriteFile(const Command& command);
  void Param(const Command& command);
  void Show(const Command& command);
  void Forget();
  void Mail(const Command& command);
  void Inject(const Command& command);
  void AnswerBox(const Command& command);
  void Pick(const Command& command);
  void Scan(const Command& command);
  void Enter(const Command& command);
  void Sort(const Command& command);
  void HandleMatches(const Command& command);
  void Export(const Command& command);

  void Expect(const Command& command);
  void ExpectSql(const Command& command);
  void ExpectCell(const Command& command);
  void ExpectPrinted(const std::string& text);
  void ExpectExported(const std::string& line);
  void ExpectReport(const std::string& line);
  void ExpectMail(const std::string& text);
  void ExpectEqual(const std::string& expected, const std::string& found);

  ui::Form& Screen();
  ui::Control& Find(const std::string& name);
  template <typename T>
  T& FindAs(const std::string& name) {
    auto* control = dynamic_cast<T*>(&Find(name));
    if (control == nullptr) throw Failure("«" + name + "» no es del tipo pedido", true);
    return *control;
  }
  Variant CallMember(const Command& command, std::size_t first_argument);
  void Report(const Command& command, const std::string& text);

  Rig& rig_;
  ui::Operator& hands_;
  std::ostream& out_;
  std::unique_ptr<Connection> other_till_;  // opened when it is first needed
  std::vector<Command> commands_;
  std::size_t next_ = 0;
  int depth_ = 0;          // commands under way: a modal screen or box plays on inside one
  int expected_error_ = 0; // the depth of the command that a failing answer must fail; 0 for none
  bool over_ = false;
  std::string gives_up_;             // the stage of long work to be given up at; "" for none
  std::vector<std::string> stages_;  // that long work came to
  bool held_ = true;
};

}  // namespace tpv::scenario
