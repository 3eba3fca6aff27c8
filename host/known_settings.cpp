#include "host/known_settings.h"

#include "adapters/files/channel.h"
#include "adapters/files/code_table.h"
#include "adapters/files/printer_setup.h"
#include "adapters/files/receipt_code.h"
#include "adapters/files/setting_names.h"
#include "base/number_text.h"
#include "base/text.h"
#include "host/play.h"
#include "output/sales_ticket.h"
#include "platform/settings.h"
#include "sale/weighed_code.h"
#include "suite/till_settings.h"

namespace tpv {

namespace {

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
bool IsAddress(const std::string& value) { return value.find('@') != std::string::npos; }
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
bool IsShopCopy(const std::string& value) { return IsShopCopySetting(value); }
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
    {"Paper", "MarkReprints", IsSwitch, "si o no: un ticket que se imprime otra vez lo dice"},
    {"Paper", "ShopCopy", IsShopCopy, "si, no o descuentos: otra copia de cada ticket para la tienda, o de los que llevan descuento"},
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
    {"Fiscal", "Certificate", IsFile, "el fichero del certificado, PEM o PKCS#12: /ruta"},
    {"Fiscal", "Key", IsFile, "el fichero PEM de su clave, si va aparte: /ruta"},
    {"Fiscal", "Password", IsAnything, "la contraseña de la clave"},
    {"Fiscal", "Seal", IsYesOrNo, "si el certificado es de sello: yes o no"},
    {"Fiscal", "CaFile", IsFile, "el certificado de quien responde por el servidor: /ruta"},
    {"Fiscal", "TestServer", IsHttps, "otro servidor para las pruebas: https://…"},
    {"Mail", "Server", IsAnything, "el servidor de correo"},
    {"Mail", "Port", IsPort, "un puerto, de 1 a 65535"},
    {"Mail", "Security", IsSecurity, "none, starttls o tls"},
    {"Mail", "User", IsAnything, "el usuario"},
    {"Mail", "Password", IsAnything, "la contraseña"},
    {"Mail", "From", IsAddress, "la dirección del remitente: caja@tienda.es"},
    {"Mail", "CaFile", IsFile, "el fichero del certificado de quien responde por el servidor: /ruta"},
    {"Mail", "Support", IsAddress, "la dirección de soporte: soporte@empresa.es"},
};

}  // namespace

Setting FindSetting(const std::string& name) {
  const std::size_t point = name.find('.');
  const std::string section = name.substr(0, point);
  const std::string key = point == std::string::npos ? "" : name.substr(point + 1);
  for (const Known& known : kKnown) {
    const bool any = *known.key == '\0';
    if (!key.empty() && EqualNoCase(section, known.section) &&
        (any || EqualNoCase(key, known.key))) {
      return {known.section, any ? key : known.key, known.fits, known.wanted};
    }
  }
  throw UsageError("ajuste desconocido: " + name);
}

std::vector<std::string_view> SettingSections() {
  std::vector<std::string_view> sections;
  for (const Known& known : kKnown) {
    if (sections.empty() || sections.back() != known.section) sections.emplace_back(known.section);
  }
  return sections;
}

std::string SettingFault(const std::string& name, const std::string& value) {
  const Setting setting = FindSetting(name);
  if (!value.empty() && setting.fits(value)) return {};
  return std::string("se espera ") + setting.wanted;
}

void ChangeSetting(Settings& settings, const std::string& name, const std::string& value) {
  const std::string fault = SettingFault(name, value);
  if (!fault.empty()) throw UsageError(name + ": " + fault);
  const Setting setting = FindSetting(name);
  settings.Write(kTpv, setting.section, setting.key, value);
}

void RemoveSetting(Settings& settings, const std::string& name) {
  const Setting setting = FindSetting(name);
  settings.Write(kTpv, setting.section, setting.key, "");
}

std::string ReadSetting(const Settings& settings, const std::string& name) {
  const Setting setting = FindSetting(name);
  return settings.Read(kTpv, setting.section, setting.key);
}

std::string MissingMailSetting(const Settings& settings) {
  const auto has = [&](const char* key) { return !Trim(settings.Read(kTpv, "Mail", key)).empty(); };
  const bool named = settings.Read(kTpv, "Mail", "User").find('@') != std::string::npos;
  return !has("Server")                    ? "Mail.Server"
         : !has("From") && !named          ? "Mail.From"
         : has("User") && !has("Password") ? "Mail.Password"
                                           : "";
}

}  // namespace tpv
