#include "fiscal/setup.h"

#include <algorithm>
#include <optional>

#include "base/text.h"
#include "context/context.h"
#include "data/sql_text.h"
#include "platform/database.h"
#include "platform/objects.h"

namespace tpv::fiscal {

namespace {

bool IsAsciiAlnum(char c) {
  return IsDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::string Text(const Desk& desk, std::string_view name) { return Trim(desk.parameter(name).TextOr("")); }

std::optional<Zone> ZoneOf(std::string_view text) {
  if (EqualNoCase(text, "madrid")) return Zone::Madrid;
  if (EqualNoCase(text, "canarias")) return Zone::Canaries;
  return std::nullopt;
}

std::unique_ptr<Recordset> ReadParameters(Connection& connection) {
  return connection.Execute("SELECT TOP 1 * FROM Parametros");
}

// The table may be a technician's, made before there were records.
Variant ParameterIn(const Recordset& row, std::string_view name) {
  if (row.Eof()) return {};
  for (std::size_t i = 0; i < row.FieldCount(); ++i) {
    if (EqualNoCase(row.FieldName(i), name)) return row.Field(i);
  }
  return {};
}

Mode ModeFrom(const Variant& stored) {
  const std::int32_t mode = stored.IntOr(0);
  if (mode == static_cast<int>(Mode::Trial)) return Mode::Trial;
  return mode == static_cast<int>(Mode::Real) ? Mode::Real : Mode::Off;
}

void RequireNoRealRecord(Connection& connection) {
  const auto real = connection.Execute("SELECT TOP 1 Fis_Id FROM Fiscal WHERE Fis_Modo = " +
                                       std::to_string(static_cast<int>(Mode::Real)));
  if (real->Eof()) return;
  throw DatabaseError("La tienda ya tiene registros de facturación de verdad: no se pueden apagar ni volver a pruebas");
}

// Documents up to these are from before there were records.
std::string Newest(Connection& connection, const std::string& column, const std::string& table) {
  return std::to_string(connection.Execute("SELECT MAX(" + column + ") FROM " + table)->Field(0).IntOr(0));
}

}  // namespace

Desk DeskOf(Context& context) {
  const auto parameter = [&context](std::string_view name) {
    try {
      return context.Parameter(name);
    } catch (const ObjectError&) {
      return Variant();  // a suite that knows nothing of records
    }
  };
  return {context.Database(), parameter, context.ports.digest};
}

Desk DeskOf(Connection& connection, const Digest* digest) {
  const auto parameter = [&connection](std::string_view name) {
    return ParameterIn(*ReadParameters(connection), name);
  };
  return {connection, parameter, digest};
}

Mode ModeOf(const Desk& desk) { return ModeFrom(desk.parameter("Par_Fiscal")); }

Setup ReadSetup(const Desk& desk) {
  const auto row = ReadParameters(desk.connection);  // once, in the middle of a sale
  const auto text = [&](std::string_view name) { return Trim(ParameterIn(*row, name).TextOr("")); };
  Setup setup;
  setup.mode = ModeFrom(ParameterIn(*row, "Par_Fiscal"));
  setup.zone = ZoneOf(text("Par_FisZona")).value_or(Zone::Madrid);
  setup.issuer = text("Par_Doc");
  setup.issuer_name = text("Par_Nombre");
  setup.producer = {text("Par_FisProductor"), text("Par_FisProdDoc"), std::string(kVersion),
                    text("Par_FisInstalacion")};
  return setup;
}

std::vector<std::string> MissingOf(const Desk& desk) {
  std::vector<std::string> missing;
  const auto require = [&](bool there, std::string_view what) {
    if (!there) missing.emplace_back(what);
  };
  require(desk.digest != nullptr, "un programa construido con libcrypto, libxml2, libqrencode y libcurl");
  require(!Text(desk, "Par_Nombre").empty(), "el nombre de la tienda (Par_Nombre)");
  require(IsTaxNumber(Text(desk, "Par_Doc")), "el NIF de la tienda, de nueve letras y cifras (Par_Doc)");
  for (const SettingName& setting : SettingNames()) {
    const std::string value = Text(desk, setting.parameter);
    const bool there = setting.word == "zona"           ? ZoneOf(value).has_value()
                       : setting.word == "productor-nif" ? IsTaxNumber(value)
                                                         : !value.empty();
    require(there, setting.meaning);
  }
  const std::string tickets = Text(desk, "Par_SerTic");
  const std::string invoices = Text(desk, "Par_SerTicFac");
  const std::string rule = " sin letras con acento ni los signos \" ' < > =";
  require(IsDocumentNumber(tickets + "/1"), "una serie de tickets" + rule + " (Par_SerTic)");
  require(IsDocumentNumber(invoices + "/1"), "una serie de facturas" + rule + " (Par_SerTicFac)");
  const bool invoiced = !desk.parameter("Par_SerTicFac").IsNull();
  require(!invoiced || !EqualNoCase(tickets, invoices), "series distintas para tickets y facturas (Par_SerTic y Par_SerTicFac)");
  return missing;
}

bool IsTaxNumber(std::string_view text) {
  constexpr std::size_t kLength = 9;
  return text.size() == kLength && std::all_of(text.begin(), text.end(), IsAsciiAlnum);
}

bool IsDocumentNumber(std::string_view text) {
  constexpr std::size_t kMost = 60;
  return !text.empty() && text.size() <= kMost && std::all_of(text.begin(), text.end(), [](char c) {
    return c >= ' ' && c <= '~' && std::string_view("\"'<>=").find(c) == std::string_view::npos;
  });
}

const std::vector<SettingName>& SettingNames() {
  static const std::vector<SettingName> names = {
      {"productor", "Par_FisProductor", "el nombre del productor del programa"},
      {"productor-nif", "Par_FisProdDoc", "el NIF del productor del programa, de nueve letras y cifras"},
      {"instalacion", "Par_FisInstalacion", "el número de la instalación"},
      {"zona", "Par_FisZona", "la zona horaria: madrid o canarias"},
  };
  return names;
}

void TurnOn(const Desk& desk, Mode mode, std::vector<std::string> missing) {
  Transaction transaction(desk.connection);
  const std::vector<std::string> own = MissingOf(desk);
  missing.insert(missing.begin(), own.begin(), own.end());
  if (!missing.empty()) {
    std::string text = "No se pueden encender los registros de facturación. Falta:";
    for (const std::string& what : missing) text += "\n  " + what;
    throw DatabaseError(text);
  }
  if (mode == Mode::Trial) RequireNoRealRecord(desk.connection);
  std::string change = "UPDATE Parametros SET Par_Fiscal = " + std::to_string(static_cast<int>(mode));
  if (ModeOf(desk) == Mode::Off) {
    change += ", Par_FisTicket = " + Newest(desk.connection, "Cav_Id", "Cav") +
              ", Par_FisFactura = " + Newest(desk.connection, "Fav_Id", "Fav") +
              ", Par_FisRegistro = " + Newest(desk.connection, "Fis_Id", "Fiscal");
  }
  desk.connection.Execute(change);
  transaction.Commit();
}

void TurnOff(const Desk& desk) {
  Transaction transaction(desk.connection);
  RequireNoRealRecord(desk.connection);
  desk.connection.Execute("UPDATE Parametros SET Par_Fiscal = 0");
  transaction.Commit();
}

}  // namespace tpv::fiscal
