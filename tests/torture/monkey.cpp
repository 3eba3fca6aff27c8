#include "tests/torture/monkey.h"

#include <unistd.h>

#include <ostream>

#include "base/text.h"
#include "component/dispatch.h"
#include "host/store_check.h"
#include "sale/sale_storage.h"
#include "screen/engine.h"

namespace tpv::torture {

namespace {

constexpr unsigned kHangSeconds = 60;
constexpr int kCallsBetweenChecks = 25;

constexpr const char* kScreens[] = {"zTpv",   "zTpv",         "zTpv",         "zTpv",
                                    "zTpv",   "zDiario",      "zMovCaja",     "zAperturaCierre",
                                    "zDiario", "zFacturacion", "zDiarioCaja", "zInfPendienteCobro",
                                    "zFindByName", "Abre_Cajon", "Emite_Ticket"};
constexpr const char* kCodes[] = {"0001", "0020", "0030", "0121", "0152", "8436210000011",
                                  "8436210000202", "0200", "9999", "1"};
constexpr const char* kNumbers[] = {"0",   "1",    "2",   "3",    "1,5", "-1",  "10",   "0,01", "22",
                                    "100", "9000", "2,5", "0,00", "24",  "50",  "1,2,3", "99999999,99",
                                    "30",  "-0,5", "4",   ",",    "12345678901234567890", "1e9"};
constexpr const char* kDates[] = {"24112026", "01012020", "31022026", "240", "010199", "99999999",
                                  "01012027", "29022028", "2411"};
constexpr const char* kWords[] = {"a", "vino", "o'c", "María", "Hotel", "", "O'Brien; DROP TABLE Cav --"};

// Steps that lead somewhere on a screen, when nothing else happens in between.
struct Habit {
  const char* form;
  std::vector<std::string> steps;  // "click X", "enter X TEXT", "select X ROW", "tick X ROW"
};
const std::vector<Habit>& Habits() {
  static const std::vector<Habit> habits = {
      {"frmTpv", {"enter Text1(6) 1", "enter Text1(0) 1", "click cmdApertura"}},
      {"frmTpv", {"enter Text1(6) 2", "enter Text1(0) 2", "click cmdCierre"}},
      {"frmTpv", {"enter Text1(2) 22", "click cmdNueva", "enter Text1(19) 0020", "click cmdFinalizar"}},
      {"frmTpv", {"enter Text1(0) 3", "click cmdPagos"}},
      {"frmTpv1", {"enter Text1(2) 24", "enter Text1(6) 1", "click cmdTicket"}},
      {"frmTpv1", {"enter Text1(6) 50", "click cmdTicket"}},
      {"frmTpv1", {"enter Text1(2) 30", "select cboFpago 0", "click cmdFactura"}},
      {"frmTpvAperturaCaja", {"enter Text1(11) 1", "enter Text1(14) 100", "click cmdGrabar"}},
      {"frmTpvMovCaja", {"enter Text1(0) 1", "enter Text1(2) 24", "tick ListView1 0",
                         "enter Text1(11) 9000", "click cmdTicket"}},
      {"frmTpvMovCaja", {"enter Text1(0) 1", "enter Text1(2) 22", "click Check2", "enter Text1(11) 7,5",
                         "click cmdTicket"}},
      {"frmTpvCierreCaja", {"enter Text1(11) 1", "click cmdProceso", "select ListView1 0",
                            "enter Text1(4) 1", "click Check1", "click cmdGrabar"}},
      {"frmTpvDiarioVentas", {"enter Text1(5) 24112026", "enter Text1(2) 31122026", "click cmdInforme",
                              "cellbutton DbgDiario 1"}},
      {"frmTpvFacturas", {"enter Text1(5) 24112026", "enter Text1(2) 31122026", "click cmdInforme",
                          "click cmdFacturar"}},
      {"frmFactuTicket", {"enter Text1(6) 24112026", "click cmdFacturar"}},
      {"frmTpvPendiente", {"click cmdInforme", "cellbutton DbgDiario 0"}},
      {"frmTpvDiarioCierres", {"enter Text1(5) 24112026", "click cmdInforme", "click cmdGenerar"}}};
  return habits;
}

struct NamedKey {
  const char* name;
  ui::Key key;
};
constexpr NamedKey kKeys[] = {
    {"Enter", ui::Key::Enter}, {"Enter", ui::Key::Enter},   {"Tab", ui::Key::Tab},
    {"Esc", ui::Key::Esc},     {"F1", ui::Key::F1},         {"F5", ui::Key::F5},         {"F8", ui::Key::F8},
    {"Add", ui::Key::Add},     {"Subtract", ui::Key::Subtract}, {"Up", ui::Key::Up},
    {"Down", ui::Key::Down},   {"Delete", ui::Key::Delete}, {"Add", ui::Key::Add}};

}  // namespace

std::string QuotedWord(std::string_view text) {
  std::string quoted = ReplaceAll(text, "\\", "\\\\");
  quoted = ReplaceAll(ReplaceAll(quoted, "\"", "\\\""), "\n", "\\n");
  return "\"" + quoted + "\"";
}

Monkey::Monkey(RecordedTill& till, ui::Operator& hands, std::ostream& script, std::uint64_t seed)
    : till_(till), hands_(hands), script_(script), dice_(seed) {}

void Monkey::Work(long actions) {
  left_ = actions;
  for (int calls = 1; left_ > 0; ++calls) {
    Call();
    if (calls % kCallsBetweenChecks == 0) CheckStoreNow();
  }
  CheckStoreNow();
}

// The host's part: a till, then a screen or a service.
void Monkey::Call() {
  --left_;
  const auto set = [&](const char* property, const std::string& value) {
    Do("set " + std::string(property) + " " + value, [&] {
      Variant argument(value);
      Invoke(*till_.component, DispatchId(property), InvokeKind::Put, {&argument, 1});
    });
  };
  if (Roll(3) == 0) set("Caja", std::to_string(1 + Roll(4)));
  if (Roll(9) == 0) set("IdAlbaran", std::to_string(Roll(400)));
  const std::string member = Any(kScreens);
  Do("call " + member, [&] { Invoke(*till_.component, DispatchId(member), InvokeKind::Call, {}); });
}

bool Monkey::Step() {
  ::alarm(kHangSeconds);  // ends a till that hangs
  if (left_-- <= 0) return false;
  till_.clock.Step();
  if (hands_.Box() != nullptr) {
    AnswerBox();
  } else if (hands_.HasSearch()) {
    ActOnSearch();
  } else {
    ActOnScreen(*hands_.Top());
  }
  return true;
}

void Monkey::ActOnScreen(ui::Form& form) {
  if (form.open_menu != nullptr) return ChooseMenu();
  if (FollowHabit()) return;
  struct Chance {
    int percent;
    Act act;
  };
  constexpr Chance kChances[] = {{10, &Monkey::Scan},     {18, &Monkey::PressKey},
                                 {10, &Monkey::RememberHabit},
                                 {10, &Monkey::TypeText}, {18, &Monkey::EnterText},
                                 {22, &Monkey::UseSomething}, {8, &Monkey::UseRows},
                                 {2, &Monkey::Close},     {1, &Monkey::MoveClock},
                                 {1, &Monkey::BreakSomething}};
  int roll = static_cast<int>(Roll(100));
  for (const Chance& chance : kChances) {
    if ((roll -= chance.percent) < 0) return (this->*chance.act)();
  }
}

void Monkey::RememberHabit() {
  for (int tries = 0; tries < 20; ++tries) {
    const Habit& habit = Any(Habits());
    if (habit.form != hands_.Top()->name) continue;
    habit_form_ = habit.form;
    habit_.assign(habit.steps.rbegin(), habit.steps.rend());
    return;
  }
}

bool Monkey::FollowHabit() {
  if (habit_.empty() || hands_.Top()->name != habit_form_ || Roll(30) == 0) {
    habit_.clear();
    return false;
  }
  const std::vector<std::string> words = Split(habit_.back(), " ");
  habit_.pop_back();
  ui::Control* control = hands_.Top()->Find(words[1]);
  if (control == nullptr) return false;
  if (words[0] == "enter") {
    Enter(*control, words[2]);
  } else if (words[0] == "click") {
    Do("click " + words[1], [&] { hands_.Click(*control); });
  } else if (words[0] == "tick") {
    Do("tick " + words[1] + " 0", [&] { hands_.Tick(*control, 0, true); });
  } else if (words[0] == "cellbutton") {
    Do("cellbutton " + words[1] + " " + words[2] + " 2",
       [&] { hands_.CellButton(*control, std::stoi(words[2]), 2); });
  } else {
    Do("select " + words[1] + " " + words[2], [&] { hands_.Select(*control, words[2]); });
  }
  return true;
}

// Runs one action of the operator; whatever is refused is as good as not done.
template <typename Action>
void Monkey::Do(const std::string& command, Action action) {
  script_ << command << "\n" << std::flush;
  try {
    action();
    CheckForm();
  } catch (const ui::ActionRefused&) {
  } catch (const PrintError&) {  // these the front end tells the operator
  } catch (const SaleTaken&) {
  } catch (const std::exception& error) {
    Report(command + ": " + error.what());
  }
}

void Monkey::Report(const std::string& what) {
  script_ << "# FINDING " << what << "\n" << std::flush;
  findings_.push_back(what);
}

void Monkey::AnswerBox() {
  constexpr const char* kNames[] = {"OK", "Yes", "No", "Cancel"};
  const auto& buttons = hands_.Box()->buttons;
  const ui::Answer answer = Roll(3) == 0 ? Any(buttons) : buttons.front();  // mostly yes
  script_ << "# " << OneLine(hands_.Box()->text) << "\n";
  Do(std::string("answer ") + kNames[static_cast<int>(answer)], [&] { hands_.Answer(answer); });
}

void Monkey::ActOnSearch() {
  switch (Roll(4)) {
    case 0: {
      const std::string text = AnyText(nullptr);
      return Do("find " + QuotedWord(text), [&] { hands_.Find(text); });
    }
    case 1:
      return Do("pick none", [&] { hands_.PickNone(); });
    default: {
      const std::size_t row = Roll(4);
      return Do("pick " + std::to_string(row), [&] { hands_.PickRow(row); });
    }
  }
}

std::string Monkey::AnyText(const ui::Control* control) {
  if (Roll(6) == 0) return Any(hostile_);
  const auto* box = dynamic_cast<const ui::TextBox*>(control);
  if (box != nullptr && box->input == ui::Input::Date) return Any(kDates);
  if (Roll(8) == 0) return Any(kDates);
  return Roll(3) == 0 ? Any(kWords) : Any(kNumbers);
}

// Mostly one that can be used.
ui::Control* Monkey::AnyControl() {
  const auto& controls = hands_.Top()->Controls();
  ui::Control* control = nullptr;
  for (int tries = 0; tries < 6; ++tries) {
    control = Any(controls);
    if (control->IsEnabled() && control->IsVisible() && control->CanFocus()) break;
  }
  return control;
}

void Monkey::Scan() {
  const std::string code = Any(kCodes);
  Do("type " + code, [&] { hands_.Type(code); });
  if (hands_.Box() != nullptr || hands_.HasSearch() || hands_.Top()->closing) return;
  Do("key Enter", [&] { hands_.Press(ui::Key::Enter); });
}

void Monkey::TypeText() {
  const std::string text = AnyText(hands_.Top()->focus).substr(0, 400);
  Do("type " + QuotedWord(text), [&] { hands_.Type(text); });
}

void Monkey::EnterText() {
  ui::Control& control = *AnyControl();
  Enter(control, AnyText(&control).substr(0, 400));
}

void Monkey::Enter(ui::Control& control, const std::string& text) {
  Do("enter " + control.name + " " + QuotedWord(text), [&] {
    const ui::Form* form = hands_.Top();
    const auto here = [&] {
      return hands_.Top() == form && !form->closing && hands_.Box() == nullptr && !hands_.HasSearch();
    };
    hands_.Focus(control);
    if (here()) hands_.Clear();
    if (here()) hands_.Type(text);
    if (here()) hands_.Press(ui::Key::Tab);
  });
}

void Monkey::PressKey() {
  const NamedKey& key = Any(kKeys);
  Do(std::string("key ") + key.name, [&] { hands_.Press(key.key); });
}

void Monkey::UseSomething() {
  ui::Control& control = *AnyControl();
  if (auto* combo = dynamic_cast<ui::ComboBox*>(&control); combo != nullptr) {
    if (combo->items.empty()) return;
    const std::string entry = Any(combo->items);
    return Do("select " + control.name + " " + QuotedWord(entry),
              [&] { hands_.Select(control, entry); });
  }
  Do("click " + control.name, [&] { hands_.Click(control); });
}

void Monkey::UseRows() {
  ui::Control& control = *AnyControl();
  const int row = static_cast<int>(Roll(5));
  const std::string at = control.name + " " + std::to_string(row);
  if (auto* list = dynamic_cast<ui::List*>(&control); list != nullptr && !list->layout.empty() && Roll(5) == 0) {
    const int column = static_cast<int>(Roll(list->layout.size()));
    return Do("sort " + control.name + " " + std::to_string(column), [&] { hands_.Sort(*list, column); });
  }
  if (dynamic_cast<ui::ListView*>(&control) != nullptr) {
    if (Roll(2) == 0) return Do("tick " + at, [&] { hands_.Tick(control, row, true); });
    return Do("select " + at, [&] { hands_.Select(control, std::to_string(row)); });
  }
  auto* grid = dynamic_cast<ui::Grid*>(&control);
  if (grid == nullptr || grid->layout.empty()) return;
  const int column = static_cast<int>(Roll(grid->layout.size()));
  Do("cellbutton " + at + " " + std::to_string(column),
     [&] { hands_.CellButton(control, row, column); });
}

void Monkey::ChooseMenu() {
  const ui::Menu& menu = *hands_.Top()->open_menu;
  if (Roll(5) == 0 || menu.entries.empty()) {
    hands_.Top()->open_menu = nullptr;
    return PressKey();
  }
  const std::string entry = Any(menu.entries).name;
  Do("menu " + entry, [&] { hands_.ChooseMenu(entry); });
}

void Monkey::Close() {
  Do("close", [&] { hands_.Close(); });
}

void Monkey::MoveClock() {
  if (till_.clock.fixed) till_.clock.fixed = AddSeconds(*till_.clock.fixed, 3600);
}

// Paper, drawer and mail fail now and then; the store does not.
void Monkey::BreakSomething() {
  const bool fails = Roll(2) == 0;
  switch (Roll(3)) {
    case 0:
      till_.printers.failing = till_.reports.failing = fails;
      break;
    case 1:
      till_.devices.failing = fails;
      break;
    default:
      till_.mail.error = fails ? "No responde" : "";
  }
}

// What no form may come to between two actions.
void Monkey::CheckForm() {
  const ui::Form* form = hands_.Top();
  const bool mid_event = hands_.Box() != nullptr || hands_.HasSearch();
  if (form == nullptr || form->closing || mid_event) return;
  for (const ui::Control* control : form->Controls()) {
    const std::string where = form->name + "." + control->name;
    if (const auto* box = dynamic_cast<const ui::TextBox*>(control)) {
      if (ValidUtf8(box->text) != box->text) Report(where + " holds half a character");
      const std::size_t length = Length(box->text);
      if (box->selection_start + box->selection_length > length) Report(where + ": selection outside");
    } else if (const auto* grid = dynamic_cast<const ui::Grid*>(control)) {
      if (grid->current_row >= static_cast<int>(grid->rows.size())) Report(where + ": row outside");
    } else if (const auto* list = dynamic_cast<const ui::ListView*>(control)) {
      if (list->current_row >= static_cast<int>(list->items.size())) Report(where + ": row outside");
    }
  }
}

void Monkey::CheckStoreNow() {
  const auto findings = CheckStore(till_.Store());
  if (AnyBroken(findings)) Report("store: " + FindingsText(findings));
  if (till_.Store().InTransaction()) Report("a transaction was left open");
}

}  // namespace tpv::torture
