#include "host/config.h"

#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <istream>
#include <ostream>
#include <stdexcept>

#include "adapters/files/channel.h"
#include "adapters/files/code_table.h"
#include "adapters/files/receipt_code.h"
#include "adapters/files/setting_names.h"
#include "base/number_text.h"
#include "base/text.h"
#include "host/machine.h"
#include "host/play.h"
#include "host/printer_trial.h"
#include "platform/settings.h"
#include "sale/weighed_code.h"
#include "suite/till_settings.h"

namespace tpv {

namespace {

using Words = std::vector<std::string>;

bool IsPort(const std::string& value) {
  const auto port = ParseInt32(value);
  return port && *port >= 1 && *port <= 65535;
}
bool IsCount(const std::string& value) {
  const auto count = ParseInt32(value);
  return count && *count >= 1 && *count <= 9999;
}
bool IsYesOrNo(const std::string& value) { return value == "yes" || value == "no"; }
bool IsFile(const std::string& value) { return value.starts_with('/'); }
bool IsHttps(const std::string& value) { return value.starts_with("https://"); }
bool IsSecurity(const std::string& value) {
  return value == "none" || value == "starttls" || value == "tls";
}
bool IsFolder(const std::string& value) {
  return value.starts_with('/') || value.starts_with("~/");
}
bool IsTypeSize(const std::string& value) {
  const auto percent = ParseInt32(value);
  return percent && *percent >= 100 && *percent <= 150;
}
bool IsMode(const std::string& value) { return ParsePrinterMode("x", value).has_value(); }
bool IsDevice(const std::string& value) { return IsTarget(value); }
bool IsLayout(const std::string& value) { return AreWeighedLayouts(value); }
bool IsCodeTable(const std::string& value) { return ParseCodeTable(value).has_value(); }
bool IsCodePrinting(const std::string& value) { return ParseCodePrinting(value).has_value(); }
bool IsTill(const std::string& value) { return suite::IsTillNumber(value); }
bool IsDrawer(const std::string& value) { return suite::IsDrawerMethod(value); }
bool IsSwitch(const std::string& value) { return ReadSwitch(value).has_value(); }
bool IsAnything(const std::string&) { return true; }

struct Known {
  const char* section;
  const char* key;  // "" for any
  bool (*fits)(const std::string& value);
  const char* wanted;
};

constexpr Known kKnown[] = {
    {"Till", "Number", IsTill, "un número de caja, de 1 a 32767"},
    {"Till", "DrawerMethod", IsDrawer,
     "cómo se abre el cajón: 0 sin cajón, 1 impresora, 2 dispositivo, 3 línea impresa, 4 LPT1"},
    {"Till", "DrawerCodes", IsAnything, "los códigos del cajón, o su dispositivo"},
    {"Paper", "Default", IsAnything, "el nombre de una impresora"},
    {"Paper", "Tickets", IsFolder, "una carpeta: /ruta o ~/ruta"},
    {"Paper", "Reports", IsFolder, "una carpeta: /ruta o ~/ruta"},
    {"Paper", "Receipts", IsSwitch, "si o no: un recibo de cada cobro o pago de caja"},
    {"Printers", "", IsMode,
     "folder[:/ruta], escpos:DESTINO, page[:COLA], roll[:COLA] o sheets[:COLA]"},
    {"CodeTable", "", IsCodeTable, kCodeTables},
    {"SquareCode", "", IsCodePrinting, kCodePrintings},
    {"Devices", "", IsDevice, "/dev/…, ordenador:puerto o queue:COLA"},
    {"Scanner", "Layout", IsLayout, "códigos de balanza: 20=IIIIIPPPPP 29=IIIIIWWWWW"},
    {"Sound", "Command", IsAnything, "la orden que suena en lugar del pitido"},
    {"Windows", "TypeSize", IsTypeSize, "el tamaño de la letra en %, de 100 a 150"},
    {"Backup", "Folder", IsFolder, "una carpeta: /ruta o ~/ruta"},
    {"Backup", "Keep", IsCount, "cuántas copias se guardan, de 1 a 9999"},
    {"Mail", "Server", IsAnything, "el servidor de correo"},
    {"Mail", "Port", IsPort, "un puerto, de 1 a 65535"},
    {"Mail", "Security", IsSecurity, "none, starttls o tls"},
    {"Mail", "User", IsAnything, "el usuario"},
    {"Mail", "Password", IsAnything, "la contraseña"},
    {"Mail", "From", IsAnything, "la dirección del remitente"},
    {"Mail", "CaFile", IsAnything, "el certificado de quien responde por el servidor"},
    {"Fiscal", "Certificate", IsFile, "el fichero del certificado, PEM o PKCS#12: /ruta"},
    {"Fiscal", "Key", IsFile, "el fichero PEM de su clave, si va aparte: /ruta"},
    {"Fiscal", "Password", IsAnything, "la contraseña de la clave"},
    {"Fiscal", "Seal", IsYesOrNo, "si el certificado es de sello: yes o no"},
    {"Fiscal", "CaFile", IsFile, "el certificado de quien responde por el servidor: /ruta"},
    {"Fiscal", "TestServer", IsHttps, "otro servidor para las pruebas: https://…"},
    {"Mail", "Support", IsAnything, "la dirección de soporte"},
};

struct Setting {
  const Known* known;
  std::string key;

  bool Is(std::string_view section, std::string_view name) const {
    return section == known->section && name == known->key;
  }
  bool IsSecret() const { return std::string_view(known->key) == "Password"; }
};

Setting Find(const std::string& name) {
  const std::size_t point = name.find('.');
  const std::string section = name.substr(0, point);
  const std::string key = point == std::string::npos ? "" : name.substr(point + 1);
  for (const Known& known : kKnown) {
    const bool any = *known.key == '\0';
    if (!key.empty() && EqualNoCase(section, known.section) &&
        (any || EqualNoCase(key, known.key))) {
      return {&known, any ? key : known.key};
    }
  }
  throw UsageError("ajuste desconocido: " + name);
}

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

void Write(Settings& settings, const Setting& setting, const std::string& value) {
  settings.Write(kTpv, setting.known->section, setting.key, value);
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
  const Setting setting = Find(words[1]);
  const bool given = words.size() == 3;
  if (given && setting.IsSecret()) {
    throw UsageError("la contraseña se escribe aparte: otros usuarios ven las órdenes");
  }
  const std::string value = given ? words[2] : ReadValue(setting, in);
  if (setting.Is(kPaper, kDefaultPrinter) && !value.empty()) CheckPrinter(machine, value, out);
  ChangeSetting(machine.settings, words[1], value);
}

std::string Shown(const Machine& machine, const Setting& setting) {
  const std::string value = machine.settings.Read(kTpv, setting.known->section, setting.key);
  return setting.IsSecret() && !value.empty() ? "(guardada)" : value;
}

void List(const Machine& machine, std::ostream& out) {
  out << "# " << machine.settings.path() << "\n";
  for (const std::string_view section :
       {suite::kTill, kPaper, kPrinters, kCodeTable, kSquareCode, kDevices, kBackup, std::string_view("Fiscal"),
        std::string_view("Mail")}) {
    for (const std::string& key : machine.settings.Keys(kTpv, section)) {
      const std::string name = std::string(section) + "." + key;
      out << name << " = " << Shown(machine, Find(name)) << "\n";
    }
  }
}

// Names the setting that is missing instead of trying without it.
void RequireMailSettings(const Machine& machine) {
  const auto has = [&](const char* key) {
    return !Trim(machine.settings.Read(kTpv, "Mail", key)).empty();
  };
  const bool named = machine.settings.Read(kTpv, "Mail", "User").find('@') != std::string::npos;
  const char* missing = !has("Server")                    ? "Mail.Server"
                        : !has("From") && !named          ? "Mail.From"
                        : has("User") && !has("Password") ? "Mail.Password"
                                                          : nullptr;
  if (missing == nullptr) return;
  throw std::runtime_error(std::string("falta el ajuste ") + missing + ": tpv config set " + missing);
}

int TryMail(Machine& machine, const std::string& recipient, std::ostream& out) {
  const MailResult result =
      machine.mailer->Send({25, recipient, "tpv", "Prueba de correo", "Prueba de correo: ñ €"});
  if (result.sent) out << "Enviado\n";
  if (!result.text.empty()) out << result.text << "\n";
  return result.sent ? 0 : 1;
}

}  // namespace

void ChangeSetting(Settings& settings, const std::string& name, const std::string& value) {
  const Setting setting = Find(name);
  if (value.empty() || !setting.known->fits(value)) {
    throw UsageError(name + ": se espera " + setting.known->wanted);
  }
  Write(settings, setting, value);
}

int Config(Machine& machine, const Words& words, std::istream& in, std::ostream& out) {
  const std::string verb = words.empty() ? "list" : words[0];
  const auto is = [&](const char* name, std::size_t least, std::size_t most) {
    return verb == name && words.size() >= least && words.size() <= most;
  };
  if (is("list", 0, 1)) {
    List(machine, out);
  } else if (is("get", 2, 2)) {
    out << Shown(machine, Find(words[1])) << "\n";
  } else if (is("set", 2, 3)) {
    Set(machine, words, in, out);
  } else if (is("unset", 2, 2)) {
    Write(machine.settings, Find(words[1]), "");
  } else if (is("printers", 1, 1)) {
    return ListPrinters(machine, out);
  } else if (is("try-printer", 1, 2)) {
    return TryPrinter(machine, words.size() == 2 ? words[1] : "", out);
  } else if (is("try-mail", 2, 2)) {
    RequireMailSettings(machine);
    return TryMail(machine, words[1], out);
  } else {
    throw UsageError("config list | get | set | unset | printers | try-printer | try-mail");
  }
  return 0;
}

}  // namespace tpv
