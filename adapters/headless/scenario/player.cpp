#include "adapters/headless/scenario/player.h"

#include <map>
#include <ostream>

#include "adapters/headless/scenario/display.h"
#include "base/number_text.h"
#include "base/text.h"
#include "component/dispatch.h"
#include "data/sql_text.h"

namespace tpv::scenario {

namespace {

ui::Key KeyOf(const Command& command) {
  static const std::map<std::string, ui::Key, std::less<>> keys = {
      {"Enter", ui::Key::Enter}, {"Tab", ui::Key::Tab}, {"Esc", ui::Key::Esc},
      {"F1", ui::Key::F1},       {"F4", ui::Key::F4},   {"F5", ui::Key::F5},      {"F8", ui::Key::F8},
      {"Add", ui::Key::Add},     {"Subtract", ui::Key::Subtract}, {"Up", ui::Key::Up},
      {"Down", ui::Key::Down},   {"Delete", ui::Key::Delete}};
  const auto known = keys.find(command.Argument(0));
  if (known == keys.end()) command.Fail("«" + command.Argument(0) + "» no es una tecla");
  return known->second;
}

int RowOf(const Command& command, std::size_t argument) {
  const auto row = ParseInt32(command.Argument(argument));
  if (!row) command.Fail("«" + command.Argument(argument) + "» no es un número de fila");
  return *row;
}

bool IsBoxCommand(std::string_view verb) { return verb == "answer"; }
bool IsSearchCommand(const Command& command) {
  const std::string& verb = command.Verb();
  const bool looks = verb == "expect" && command.Argument(0).starts_with("match");
  const bool of_list = verb == "sort" || verb == "export" || verb == "menu";
  const bool handles = of_list && command.Argument(0) == "search";
  return verb == "pick" || verb == "find" || handles || looks;
}
// What the operator of this till has no hand in, or what is struck blindly; a look at what
// has left the till.
bool MindsNothingOpen(const Command& command) {
  const std::string& verb = command.Verb();
  const bool looks = verb == "expect" && (command.Argument(0) == "exported" || command.Argument(0) == "report");
  return verb == "scan" || verb == "other" || verb == "kill" || looks;
}

}  // namespace

Player::Player(Rig& rig, ui::Operator& hands, std::ostream& transcript)
    : rig_(rig), hands_(hands), out_(transcript) {
  rig_.printers.on_document = [this](const PrintedDocument& document) {
    out_ << "--- printed on " << document.printer << "\n";
    for (const std::string& line : document.lines) out_ << line << "\n";
    out_ << "---\n";
  };
  rig_.printers.on_raw = [this](const std::string& bytes) { out_ << "raw " << Hex(bytes) << "\n"; };
  rig_.devices.on_write = [this](const std::string& device, const std::string& bytes) {
    out_ << "device " << device << " " << Hex(bytes) << "\n";
  };
  rig_.mail.on_mail = [this](const tpv::Mail& mail) {
    out_ << "--- mail to " << mail.to << ": " << mail.subject << "\n" << mail.body << "\n---\n";
  };
  if (rig_.tables != nullptr) {
    rig_.tables->on_line = [this](const std::string& line) { out_ << "exported " << line << "\n"; };
  }
  rig_.reports.on_report = [this](const tpv::Report& report) { out_ << ReportText(report); };
}

bool Player::Play(std::vector<Command> commands) {
  commands_ = std::move(commands);
  next_ = 0;
  over_ = false;
  held_ = true;
  while (StepOrStartAgain()) {
  }
  return held_;
}

bool Player::StepOrStartAgain() {
  try {
    return Step();
  } catch (const ui::TillKilled&) {
    depth_ = expected_error_ = 0;
    rig_.premises.start_again();
    return true;
  }
}

bool Player::Step() {
  if (over_ || next_ >= commands_.size()) {
    if (!over_ && hands_.Box() != nullptr) {
      Report(commands_.back(), "el guion termina con un mensaje abierto: " + hands_.Box()->text);
    }
    over_ = true;
    return false;
  }
  const Command& command = commands_[next_++];
  rig_.clock.Step();
  out_ << command.text << "\n" << std::flush;  // whoever kills this till knows how far it came
  Run(command);
  return !over_;
}

void Player::Run(const Command& command) {
  ++depth_;
  RunReported(command);
  if (expected_error_ == depth_) {
    expected_error_ = 0;
    if (!over_) Report(command, "se esperaba un error y no lo hubo");
  }
  --depth_;
}

void Player::RunReported(const Command& command) {
  try {
    Dispatch(command);
  } catch (const ScriptError&) {
    over_ = true;
    throw;
  } catch (const Failure& failure) {
    Report(command, failure.what());
    over_ = over_ || failure.fatal();
  } catch (const ui::ActionRefused& refused) {
    Report(command, refused.what());
    over_ = true;
  } catch (const std::exception& error) {
    if (expected_error_ == depth_) {
      expected_error_ = 0;
      out_ << error.what() << "\n";
      return;
    }
    Report(command, std::string("error: ") + error.what());
    over_ = true;
  }
}

void Player::Report(const Command& command, const std::string& text) {
  out_ << "FAILED " << command.file << ":" << command.line << ": " << text << "\n";
  held_ = false;
}

void Player::OnBox(const ui::MessageBox& box) { out_ << BoxText(box) << "\n"; }

bool Player::GivesUp(const ui::Progress& progress) {
  if (stages_.empty() || stages_.back() != progress.stage) {
    stages_.push_back(progress.stage);
    out_ << "... " << progress.stage << "\n";
  }
  if (gives_up_ != progress.stage) return false;
  gives_up_.clear();
  return true;
}

void Player::Dispatch(const Command& command) {
  RequireNothingOpen(command);
  if (command.Verb() != "menu" && hands_.Top() != nullptr && command.Verb() != "expect") {
    hands_.Top()->open_menu = nullptr;
  }
  if (RunHostCommand(command)) return;
  if (IsBoxCommand(command.Verb())) return AnswerBox(command);
  if (command.Verb() == "pick") return Pick(command);
  if (command.Verb() == "find") return hands_.Find(command.TextFrom(0));
  if (IsSearchCommand(command)) return HandleMatches(command);
  if (command.Verb() == "scan") return Scan(command);
  RunScreenCommand(command);
}

// A box or a dialog takes nothing but its own commands.
void Player::RequireNothingOpen(const Command& command) {
  if (command.Verb() == "fails") return RequireNothingOpen(command.Inner(0));
  if (MindsNothingOpen(command)) return;
  const bool own_box = IsBoxCommand(command.Verb());
  const bool own_search = IsSearchCommand(command);
  if (const ui::MessageBox* box = hands_.Box(); box != nullptr && !own_box) {
    throw Failure("hay un mensaje abierto: " + box->text, true);
  }
  if (hands_.Box() == nullptr && own_box) throw Failure("no hay ningún mensaje abierto", true);
  if (hands_.Box() == nullptr && hands_.HasSearch() && !own_search) {
    throw Failure("hay una búsqueda abierta", true);
  }
  if (!hands_.HasSearch() && own_search) throw Failure("no hay ninguna búsqueda abierta", true);
}

bool Player::RunHostCommand(const Command& command) {
  using Handler = void (Player::*)(const Command&);
  static const std::map<std::string, Handler, std::less<>> handlers = {
      {"call", &Player::Call},     {"sql", &Player::Sql},      {"param", &Player::Param},
      {"show", &Player::Show},     {"mail", &Player::Mail},    {"fail", &Player::Inject},
      {"expect", &Player::Expect}, {"fails", &Player::Fails},  {"other", &Player::Other},
      {"kill", &Player::Kill},     {"config", &Player::Config}, {"office", &Player::Office},
      {"start", &Player::Start},   {"file", &Player::WriteFile}};
  if (const auto found = handlers.find(command.Verb()); found != handlers.end()) {
    (this->*found->second)(command);
    return true;
  }
  if (command.Verb() == "set") {
    Variant value(command.Argument(1));
    Invoke(*rig_.component, DispatchId(command.Argument(0)), InvokeKind::Put, {&value, 1});
  } else if (command.Verb() == "forget") {
    Forget();
  } else if (command.Verb() == "giveup") {
    gives_up_ = command.Argument(0);
  } else if (command.Verb() == "setting") {
    rig_.settings.Write("OKRA", "Printer", "Spool", command.Argument(0));
  } else if (command.Verb() == "printers") {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < command.Count(); ++i) names.push_back(command.Argument(i));
    rig_.printers.Install(std::move(names));
  } else {
    return false;
  }
  return true;
}

bool Player::RunScreenCommand(const Command& command) {
  Screen();
  const std::string& verb = command.Verb();
  if (verb == "type") {
    hands_.Type(command.TextFrom(0));
  } else if (verb == "clear") {
    hands_.Clear();
  } else if (verb == "key") {
    hands_.Press(KeyOf(command));
  } else if (verb == "close") {
    hands_.Close();
  } else if (verb == "menu") {
    hands_.ChooseMenu(command.Argument(0));
  } else if (verb == "enter") {
    Enter(command);
  } else if (verb == "focus") {
    hands_.Focus(Find(command.Argument(0)));
  } else if (verb == "click") {
    hands_.Click(Find(command.Argument(0)));
  } else if (verb == "select") {
    hands_.Select(Find(command.Argument(0)),
                  command.TextFrom(1));
  } else if (verb == "tick" || verb == "untick") {
    hands_.Tick(Find(command.Argument(0)), RowOf(command, 1), verb == "tick");
  } else if (verb == "sort") {
    Sort(command);
  } else if (verb == "export") {
    Export(command);
  } else if (verb == "listmenu") {
    hands_.OpenListMenu(FindAs<ui::List>(command.Argument(0)));
  } else if (verb == "cellbutton") {
    hands_.CellButton(Find(command.Argument(0)), RowOf(command, 1), RowOf(command, 2));
  }
  return true;
}

void Player::Scan(const Command& command) {
  if (hands_.Box() == nullptr && !hands_.HasSearch()) Screen();
  hands_.Scan(command.Argument(0));
}

void Player::Enter(const Command& command) {
  hands_.Focus(Find(command.Argument(0)));
  hands_.Clear();
  hands_.Type(command.TextFrom(1));
  hands_.Press(ui::Key::Tab);
}

ui::Form& Player::Screen() {
  ui::Form* form = hands_.Top();
  if (form == nullptr) throw Failure("no hay ninguna pantalla abierta", true);
  return *form;
}

ui::Control& Player::Find(const std::string& name) {
  ui::Control* control = Screen().Find(name);
  if (control == nullptr) throw Failure(Screen().name + " no tiene «" + name + "»", true);
  return *control;
}


Variant Player::CallMember(const Command& command, std::size_t first_argument) {
  std::vector<Variant> arguments;
  for (std::size_t i = first_argument + 1; i < command.Count(); ++i) {
    arguments.emplace_back(command.Argument(i));
  }
  return Invoke(*rig_.component, DispatchId(command.Argument(first_argument)), InvokeKind::Call,
                arguments);
}

void Player::Call(const Command& command) {
  const Variant result = CallMember(command, 0);
  if (!result.IsNull()) out_ << command.Argument(0) << " = " << result.ToPlainText() << "\n";
}

void Player::Fails(const Command& command) {
  const Command inner = command.Inner(0);
  if (IsBoxCommand(inner.Verb()) || IsSearchCommand(inner)) {
    Dispatch(inner);
    expected_error_ = depth_ - 1;  // the error is that of the command that waits for the answer
    return;
  }
  try {
    Dispatch(inner);
  } catch (const Failure&) {
    throw;
  } catch (const ui::ActionRefused&) {
    throw;
  } catch (const ScriptError&) {
    throw;
  } catch (const std::exception& error) {
    out_ << error.what() << "\n";
    return;
  }
  if (!over_) throw Failure("se esperaba un error y no lo hubo", false);
}

void Player::Sql(const Command& command) {
  const auto rows = rig_.Store().Execute(command.Rest(0));
  out_ << PlainRows(*rows);
}

void Player::Other(const Command& command) {
  if (!rig_.premises.connect) throw Failure("aquí no se puede abrir otra conexión", true);
  if (!other_till_) other_till_ = rig_.premises.connect();
  const auto rows = other_till_->Execute(command.Rest(0));
  out_ << PlainRows(*rows);
}

void Player::Kill(const Command&) {
  if (!rig_.premises.start_again) throw Failure("aquí no se puede matar el programa", true);
  rig_.connection.Cut();
  throw ui::TillKilled();
}

void Player::Config(const Command& command) {
  if (!rig_.premises.configure) throw Failure("aquí no se puede cambiar un ajuste", true);
  try {
    rig_.premises.configure(command.Argument(0), command.Argument(1));
  } catch (const std::exception& error) {
    command.Fail(error.what());
  }
}

void Player::Office(const Command&) {
  if (!rig_.premises.open_office) throw Failure("aquí no se puede abrir la oficina", true);
  rig_.premises.open_office();
}

void Player::Start(const Command&) {
  if (!rig_.premises.start_program) throw Failure("aquí no se puede abrir el programa", true);
  rig_.premises.start_program();
}

void Player::WriteFile(const Command& command) {
  if (!rig_.premises.write_file) throw Failure("aquí no hay carpeta en la que escribir", true);
  rig_.premises.write_file(command.Argument(0), command.Argument(1));
}

void Player::Param(const Command& command) {
  const std::string& value = command.Argument(1);
  rig_.Store().Execute("UPDATE Parametros SET [" + command.Argument(0) +
                       "] = " + (value == "null" ? "NULL" : sql::Quoted(value)));
}

void Player::Show(const Command& command) {
  const ui::Control& control = Find(command.Argument(0));
  if (!HasRows(control)) {
    out_ << control.name << " = \"" << TextOf(control) << "\"\n";
    return;
  }
  out_ << control.name << ":\n" << RowsOf(control);
}

void Player::Forget() {
  rig_.printers.documents.clear();
  rig_.reports.reports.clear();
  rig_.printers.raw_bytes.clear();
  rig_.printers.last_printer.clear();
  rig_.devices.written.clear();
  rig_.mail.mails.clear();
  rig_.connection.sent.clear();
  rig_.sound.asked_for = false;
  stages_.clear();
  if (rig_.tables != nullptr) rig_.tables->lines.clear();
}

void Player::Mail(const Command& command) {
  rig_.mail.configured = command.Argument(0) == "on";
}

void Player::Inject(const Command& command) {
  const std::string& what = command.Argument(0);
  const bool with_text = what == "mail" || what == "sql";
  if (with_text && command.Count() != 2) command.Fail("falta el texto");
  if (what == "printer") {
    rig_.printers.failing = rig_.reports.failing = true;
  } else if (what == "late") {
    rig_.printers.late = true;
  } else if (what == "device") {
    rig_.devices.failing = true;
  } else if (what == "mail") {
    rig_.mail.error = command.Argument(1);
  } else if (what == "sql") {
    rig_.connection.failing_fragment = command.Argument(1);
  } else {
    rig_.printers.failing = rig_.printers.late = rig_.reports.failing = rig_.devices.failing = false;
    rig_.mail.error.clear();
    rig_.connection.failing_fragment.clear();
  }
}

void Player::AnswerBox(const Command& command) {
  const ui::MessageBox& box = *hands_.Box();
  const std::string& name = command.Argument(0);
  static const std::map<std::string, ui::Answer, std::less<>> answers = {
      {"OK", ui::Answer::Ok},
      {"Yes", ui::Answer::Yes},
      {"No", ui::Answer::No},
      {"Cancel", ui::Answer::Cancel}};
  const auto found = answers.find(name);
  const std::string shown = ReplaceAll(box.text, kLineBreak, "\n");
  const bool right_text =
      command.Count() == 1 || ReplaceAll(command.Argument(1), kLineBreak, "\n") == shown;
  hands_.Answer(found == answers.end() ? box.default_button : found->second);
  if (!right_text) ExpectEqual(command.Argument(1), box.text);
}

void Player::Pick(const Command& command) {
  const std::string& what = command.Argument(0);
  const bool quoted = command.text[command.words[1].begin] == '"';
  if (!quoted && what == "none") return hands_.PickNone();
  const auto row = quoted ? std::nullopt : ParseInt32(what);
  if (row && *row >= 0) return hands_.PickRow(static_cast<std::size_t>(*row));
  hands_.PickText(what);
}

}  // namespace tpv::scenario
