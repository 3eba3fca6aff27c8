#include "host/settings_window.h"

#include <algorithm>
#include <stdexcept>

#include "adapters/files/setting_names.h"
#include "base/text.h"
#include "host/known_settings.h"
#include "host/printer_trial.h"
#include "platform/mailer.h"
#include "platform/printer.h"
#include "platform/settings.h"
#include "platform/sound.h"

namespace tpv {

namespace {

enum Index {
  kTill, kDrawerCodes, kScanner, kTicketPlace, kReportPlace, kReceipts, kServer, kPort, kMailUser, kPassword, kFrom, kCaFile,
  kSupport, kRecipient, kSound, kTypeSize, kCopyFolder, kCopies
};

struct TextField {
  Index index;
  const char* setting;  // "" for none
  const char* caption;
  int columns;
};

constexpr TextField kTexts[] = {
    {kTill, "Till.Number", "Número de caja", 8},
    {kDrawerCodes, "Till.DrawerCodes", "Códigos del cajón, o su dispositivo", 24},
    {kScanner, "Scanner.Layout", "Códigos de balanza (20=IIIIIPPPPP)", 30},
    {kTicketPlace, "Paper.Tickets", "Carpeta de los tickets", 36},
    {kReportPlace, "Paper.Reports", "Carpeta de los informes", 36},
    {kReceipts, "Paper.Receipts", "Recibo de cada cobro o pago de caja (si o no)", 8},
    {kServer, "Mail.Server", "Servidor de correo", 36},
    {kPort, "Mail.Port", "Puerto (25)", 8},
    {kMailUser, "Mail.User", "Usuario", 30},
    {kPassword, "Mail.Password", "Contraseña (la guardada no se enseña)", 24},
    {kFrom, "Mail.From", "Remitente", 30},
    {kCaFile, "Mail.CaFile", "Certificado de quien responde por el servidor", 36},
    {kSupport, "Mail.Support", "Soporte: a quién se avisa de un cierre fallido", 36},
    {kRecipient, "", "Dirección para la prueba", 30},
    {kSound, "Sound.Command", "Orden que suena en lugar del pitido", 50},
    {kTypeSize, "Windows.TypeSize", "Tamaño de la letra en % (al abrir de nuevo)", 8},
    {kCopyFolder, "Backup.Folder", "Carpeta de las copias (copias, junto al almacén)", 50},
    {kCopies, "Backup.Keep", "Cuántas se guardan (14)", 8},
};

struct Choice {
  const char* text;
  const char* value;
};

constexpr Choice kDrawers[] = {{"Como diga la tienda", ""},      {"No hay cajón", "0"},
                               {"Códigos a la impresora", "1"},  {"Un dispositivo", "2"},
                               {"Una línea impresa", "3"},       {"Códigos a LPT1", "4"}};
constexpr Choice kSecurities[] = {
    {"Lo normal", ""}, {"STARTTLS", "starttls"}, {"TLS desde el principio", "tls"}, {"Sin cifrar", "none"}};

template <std::size_t N>
ui::Entries Offered(const Choice (&choices)[N]) {
  std::vector<std::string> texts;
  for (const Choice& choice : choices) texts.emplace_back(choice.text);
  return ui::Entries(std::move(texts));
}

template <std::size_t N>
int IndexOf(const Choice (&choices)[N], const std::string& value) {
  const auto* found = std::find_if(choices, choices + N, [&](const Choice& choice) { return choice.value == value; });
  return found == choices + N ? -1 : static_cast<int>(found - choices);
}

constexpr const char* kFirst = "La primera que haya";
constexpr const char* kDrawer = "Till.DrawerMethod";
constexpr const char* kSecurity = "Mail.Security";
constexpr const char* kDefault = "Paper.Default";

// Why a list is not what the operator means; "" when it is.
std::string ListFault(const office::ListEditor& list) {
  for (const auto& row : list.Get()) {
    const auto said = [](const std::string& cell) { return !cell.empty(); };
    if (std::any_of(row.begin() + 1, row.end(), said)) continue;
    return "de «" + row.front() + "» falta lo demás: escríbalo y pulse Cambiar, o quítelo de la lista";
  }
  return list.Unadded();
}

std::string NameOf(const char* section, const std::string& key) { return std::string(section) + "." + key; }

}  // namespace

SettingsWindow::SettingsWindow(const Ports& ports)
    : PagedWindow(ports.ui, "frmAjustes"),
      ports_(ports),
      devices_(*this, "Dispositivos", {{"Dispositivo", 16}, {"Adónde va (/dev/…, ordenador:puerto, queue:COLA)", 40}}),
      printers_(*this, "Impresoras",
                {{"Impresora", 16}, {"Cómo imprime (escpos:DESTINO, page, folder…)", 34}, {"Letras (858:19)", 14}}) {
  caption = "Ajustes de este equipo";
  DeclareFields();
  DeclarePages();
  cmdCarpeta.click = [this] {
    const std::string folder = front_end().ChooseFile(
        {"Carpeta de las copias", "", Text1[kCopyFolder].text, ui::FileQuestion::Kind::Folder});
    if (!folder.empty()) Text1[kCopyFolder].text = folder;
  };
  cmdProbarCajon.click = [this] {
    Try([this] {
      open_drawer();
      return std::string("Orden enviada al cajón. Si no se abre, revise el método y los códigos");
    });
  };
  cmdProbarImpresora.click = [this] { Try([this] { return TryPrinter(); }); };
  cmdProbarCorreo.click = [this] { Try([this] { return TryMail(); }); };
  cmdProbarSonido.click = [this] {
    Try([this] {
      ports_.sound.Warn();
      return std::string();
    });
  };
  cmdProbarCopia.click = [this] { Try(make_copy); };
  cmdAceptar.click = [this] {
    if (Store()) Close();
  };
  cmdCancelar.click = [this] { Close(); };
}

void SettingsWindow::DeclareFields() {
  for (const TextField& field : kTexts) {
    ui::TextBox& box = Text1.Add(field.index, field.caption);
    box.columns = field.columns;
    box.max_length = 300;
    if (*field.setting != '\0') controls_[field.setting] = &box;
  }
  Text1[kPassword].secret = true;
  cboCajon.Offer(Offered(kDrawers));
  cboSeguridad.Offer(Offered(kSecurities));
  cboImpresora.columns = 30;
  controls_.insert({{kDrawer, &cboCajon}, {kSecurity, &cboSeguridad}, {kDefault, &cboImpresora}});
}

void SettingsWindow::DeclarePages() {
  for (const Index wide : {kServer, kCaFile, kSupport, kSound, kCopyFolder, kTicketPlace, kReportPlace}) {
    Text1[wide].stretch = true;
  }
  const auto with = [](std::vector<std::vector<ui::Control*>> first, office::ListEditor& list) {
    for (auto& row : list.Rows()) first.push_back(std::move(row));
    return first;
  };
  AddPage("&1 Caja y cajón")
      .Rows(with({{&Text1[kTill], &cboCajon, &Text1[kDrawerCodes], &cmdProbarCajon}, {&Text1[kScanner]}}, devices_));
  AddPage("&2 Impresoras")
      .Rows(with({{&cboImpresora, &cmdProbarImpresora, &Text1[kReceipts]}, {&Text1[kTicketPlace], &Text1[kReportPlace]}}, printers_));
  AddPage("&3 Correo")
      .Rows({{&Text1[kServer], &Text1[kPort], &cboSeguridad},
             {&Text1[kMailUser], &Text1[kPassword], &Text1[kFrom]},
             {&Text1[kCaFile]},
             {&Text1[kSupport]},
             {&Text1[kRecipient], &cmdProbarCorreo}});
  AddPage("&4 Sonido y letra").Rows({{&Text1[kSound], &cmdProbarSonido}, {&Text1[kTypeSize]}});
  AddPage("&5 Copias").Rows({{&Text1[kCopyFolder], &cmdCarpeta}, {&Text1[kCopies], &cmdProbarCopia}});
  LayOutPages({&cmdAceptar, &cmdCancelar, &lblPrueba});
  cmdAceptar.emphasis = ui::Emphasis::Strong;
}

void SettingsWindow::OnLoad() {
  cmdProbarCajon.enabled = open_drawer != nullptr;
  cmdProbarCopia.enabled = make_copy != nullptr;
  Show();
}

void SettingsWindow::OfferPrinters() {
  std::vector<std::string> names{kFirst};
  for (std::string& printer : ports_.printers.Installed()) names.push_back(std::move(printer));
  const std::string chosen = ReadSetting(ports_.settings, kDefault);
  if (!chosen.empty() && std::find(names.begin(), names.end(), chosen) == names.end()) names.push_back(chosen);
  cboImpresora.Offer(ui::Entries(std::move(names)));
  cboImpresora.SelectIf([&](std::string_view entry) { return entry == chosen; });
}

void SettingsWindow::Show() {
  for (const TextField& field : kTexts) {
    if (*field.setting == '\0' || field.index == kPassword) continue;
    Text1[field.index].text = ReadSetting(ports_.settings, field.setting);
  }
  Text1[kPassword].text.clear();
  cboCajon.index = IndexOf(kDrawers, ReadSetting(ports_.settings, kDrawer));
  cboSeguridad.index = IndexOf(kSecurities, ReadSetting(ports_.settings, kSecurity));
  const auto stored = [&](std::string_view section, const std::string& key) {
    return ports_.settings.Read(kTpv, section, key);
  };
  std::vector<office::ListEditor::Cells> rows_shown;
  for (const std::string& key : ports_.settings.Keys(kTpv, kDevices)) rows_shown.push_back({key, stored(kDevices, key)});
  devices_.Set(std::move(rows_shown));
  rows_shown.clear();
  std::vector<std::string> names = ports_.settings.Keys(kTpv, kPrinters);
  for (const std::string& key : ports_.settings.Keys(kTpv, kCodeTable)) {
    if (std::find(names.begin(), names.end(), key) == names.end()) names.push_back(key);
  }
  for (const std::string& key : names) rows_shown.push_back({key, stored(kPrinters, key), stored(kCodeTable, key)});
  printers_.Set(std::move(rows_shown));
  OfferPrinters();
}

std::string SettingsWindow::Typed(const std::string& setting) const {
  if (setting == kDrawer) return cboCajon.index < 0 ? "" : kDrawers[cboCajon.index].value;
  if (setting == kSecurity) return cboSeguridad.index < 0 ? "" : kSecurities[cboSeguridad.index].value;
  if (setting == kDefault) return cboImpresora.index <= 0 ? "" : cboImpresora.Text();
  return Trim(dynamic_cast<const ui::TextBox&>(*controls_.at(setting)).text);
}

// A list's column against the section's keys; a row without that cell has no such setting.
void SettingsWindow::AddListChanges(const char* section, const office::ListEditor& list, std::size_t column,
                                    std::vector<Change>& changes) const {
  ui::Control* control = &const_cast<office::ListEditor&>(list).list();
  std::map<std::string, std::string> wanted;
  for (const auto& row : list.Get()) {
    if (!row.at(column).empty()) wanted[row.at(0)] = row.at(column);
  }
  for (const std::string& key : ports_.settings.Keys(kTpv, section)) {
    if (!wanted.contains(key)) changes.push_back({NameOf(section, key), "", control, ""});
  }
  for (const auto& [key, value] : wanted) {
    if (ports_.settings.Read(kTpv, section, key) == value) continue;
    changes.push_back({NameOf(section, key), value, control, list.Label() + " «" + key + "»"});
  }
}

std::vector<SettingsWindow::Change> SettingsWindow::Changes() const {
  std::vector<Change> changes;
  for (const auto& [setting, control] : controls_) {
    const std::string typed = Typed(setting);
    const bool kept = control == &Text1[kPassword] && typed.empty();
    if (!kept && typed != ReadSetting(ports_.settings, setting)) changes.push_back({setting, typed, control, control->caption});
  }
  AddListChanges("Devices", devices_, 1, changes);
  AddListChanges("Printers", printers_, 1, changes);
  AddListChanges("CodeTable", printers_, 2, changes);
  return changes;
}

// All of them or none that does not fit.
bool SettingsWindow::Store() {
  const std::vector<Change> changes = Changes();
  std::string text;
  ui::Control* first = nullptr;
  for (const Change& change : changes) {
    if (change.value.empty()) continue;
    const std::string fault = SettingFault(change.setting, change.value);
    if (fault.empty()) continue;
    if (first == nullptr) first = change.control;
    text += "\r\n" + change.label + ": " + fault;
  }
  for (office::ListEditor* list : {&devices_, &printers_}) {
    const std::string fault = ListFault(*list);
    if (fault.empty()) continue;
    if (first == nullptr) first = &list->list();
    text += "\r\n" + list->Label() + ": " + fault;
  }
  if (first != nullptr) {
    Tell("No se ha guardado nada:" + text, ui::Icon::Exclamation);
    GoTo(*first);
    return false;
  }
  for (const Change& change : changes) {
    if (change.value.empty()) {
      RemoveSetting(ports_.settings, change.setting);
    } else {
      ChangeSetting(ports_.settings, change.setting, change.value);
    }
  }
  Show();
  return true;
}

void SettingsWindow::Try(const std::function<std::string()>& trial) {
  if (!Store()) return;
  const ui::WaitCursor waiting(*this);
  try {
    if (const std::string told = trial(); !told.empty()) Tell(told);
  } catch (const std::exception& error) {
    Tell(error.what(), ui::Icon::Critical);
  }
}

// The till's own printer is what it was afterwards.
std::string SettingsWindow::TryPrinter() {
  const std::string current = ports_.printers.Current();
  const std::string tried = Typed(kDefault);
  PrintTrial(ports_.printers, ports_.settings, ports_.clock, tried.empty() ? current : tried);
  ports_.printers.SetCurrent(current);
  return "Prueba enviada a «" + (tried.empty() ? current : tried) + "»";
}

std::string SettingsWindow::TryMail() {
  const std::string recipient = Trim(Text1[kRecipient].text);
  if (recipient.find('@') == std::string::npos) {
    SetFocus(Text1[kRecipient]);
    return "Escriba a qué dirección se envía la prueba";
  }
  if (const std::string missing = MissingMailSetting(ports_.settings); !missing.empty()) {
    SetFocus(*controls_.at(missing));
    throw std::runtime_error("Falta: " + controls_.at(missing)->caption);
  }
  const MailResult result = ports_.mailer.Send({25, recipient, "tpv", "Prueba de correo", "Prueba de correo: ñ €"});
  if (!result.sent) throw std::runtime_error("No se ha enviado.\r\n" + result.text);
  return result.text.empty() ? "Enviado" : "Enviado\r\n" + result.text;
}

}  // namespace tpv
