#include "host/config.h"

#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <istream>
#include <ostream>
#include <stdexcept>

#include "adapters/files/receipt_code.h"
#include "adapters/files/setting_names.h"
#include "base/text.h"
#include "host/known_settings.h"
#include "host/machine.h"
#include "host/play.h"
#include "host/printer_trial.h"

namespace tpv {

namespace {

using Words = std::vector<std::string>;

// Typed text is not shown while this lives.
class Unseen {
 public:
  Unseen() : terminal_(::isatty(STDIN_FILENO) == 1 && ::tcgetattr(STDIN_FILENO, &before_) == 0) {
    if (!terminal_) return;
    termios quiet = before_;
    quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
  }
  ~Unseen() {
    if (terminal_) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
  }
  Unseen(const Unseen&) = delete;
  Unseen& operator=(const Unseen&) = delete;

 private:
  termios before_{};
  bool terminal_;
};

std::string ReadValue(const Setting& setting, std::istream& in) {
  std::string value;
  if (setting.IsSecret()) {
    const Unseen unseen;
    std::getline(in, value);
  } else {
    std::getline(in, value);
  }
  if (value.ends_with('\r')) value.pop_back();
  return value;
}

// Only a printer that there is; where nobody can say, the technician is told so.
void CheckPrinter(Machine& machine, const std::string& name, std::ostream& out) {
  bool asked = true;
  machine.printers.news.failed = [&](const Notice&) { asked = false; };
  const std::vector<std::string> known = machine.printers.Installed();
  machine.printers.news = {};
  if (std::find(known.begin(), known.end(), name) != known.end()) return;
  if (asked) throw UsageError("no existe la impresora «" + name + "»: tpv config printers");
  out << "El sistema de impresión no responde: no se ha comprobado que exista «" << name << "»\n";
}

void Set(Machine& machine, const Words& words, std::istream& in, std::ostream& out) {
  const Setting setting = FindSetting(words[1]);
  const bool given = words.size() == 3;
  if (given && setting.IsSecret()) {
    throw UsageError("la contraseña se escribe aparte: otros usuarios ven las órdenes");
  }
  const std::string value = given ? words[2] : ReadValue(setting, in);
  if (setting.Is(kPaper, kDefaultPrinter) && !value.empty()) CheckPrinter(machine, value, out);
  ChangeSetting(machine.settings, words[1], value);
}

std::string Shown(const Machine& machine, const Setting& setting) {
  const std::string value = machine.settings.Read(kTpv, setting.section, setting.key);
  return setting.IsSecret() && !value.empty() ? "(guardada)" : value;
}

void List(const Machine& machine, std::ostream& out) {
  out << "# " << machine.settings.path() << "\n";
  for (const std::string_view section : SettingSections()) {
    for (const std::string& key : machine.settings.Keys(kTpv, section)) {
      const std::string name = std::string(section) + "." + key;
      out << name << " = " << Shown(machine, FindSetting(name)) << "\n";
    }
  }
}

int TryMail(Machine& machine, const std::string& recipient, std::ostream& out) {
  const MailResult result =
      machine.mailer->Send({25, recipient, "tpv", "Prueba de correo", "Prueba de correo: ñ €"});
  if (result.sent) out << "Enviado\n";
  if (!result.text.empty()) out << result.text << "\n";
  return result.sent ? 0 : 1;
}

}  // namespace

int Config(Machine& machine, const Words& words, std::istream& in, std::ostream& out) {
  const std::string verb = words.empty() ? "list" : words[0];
  const auto is = [&](const char* name, std::size_t least, std::size_t most) {
    return verb == name && words.size() >= least && words.size() <= most;
  };
  if (is("list", 0, 1)) {
    List(machine, out);
  } else if (is("get", 2, 2)) {
    out << Shown(machine, FindSetting(words[1])) << "\n";
  } else if (is("set", 2, 3)) {
    Set(machine, words, in, out);
  } else if (is("unset", 2, 2)) {
    RemoveSetting(machine.settings, words[1]);
  } else if (is("printers", 1, 1)) {
    return ListPrinters(machine, out);
  } else if (is("try-printer", 1, 3)) {
    Words named(words.begin() + 1, words.end());
    const bool with_code = std::erase(named, "--qr") > 0;
    if (named.size() > 1) throw UsageError("config try-printer [--qr] [IMPRESORA]");
    return TryPrinter(machine, named.empty() ? "" : named[0], with_code, out);
  } else if (is("try-mail", 2, 2)) {
    if (const std::string missing = MissingMailSetting(machine.settings); !missing.empty()) {
      throw std::runtime_error("falta el ajuste " + missing + ": tpv config set " + missing);
    }
    return TryMail(machine, words[1], out);
  } else {
    throw UsageError("config list | get | set | unset | printers | try-printer | try-mail");
  }
  return 0;
}

}  // namespace tpv
