#include "office/fields.h"

#include <charconv>

#include "base/number_text.h"
#include "data/schema.h"
#include "data/sql_text.h"

namespace tpv::office {

namespace {

using enum FieldKind;

constexpr Field kArticle[] = {
    {"codigo", "ART", "ART_Cod", Text},      {"codigo_barras", "ART", "ART_BARCODE", Text},
    {"descripcion", "ART", "art_des", Text}, {"precio", "ART", "art_pve", Number},
    {"tipo_iva", "ART", "art_tiva", Whole},  {kWarehouse, "ART", "art_alma", Whole},
};

constexpr Field kCustomer[] = {
    {"codigo", "Cli", "CLI_COD", Whole},
    {"nombre", "Cli", "CLI_NOM", Text},
    {"apellido1", "Cli", "CLI_APE1", Text},
    {"apellido2", "Cli", "CLI_APE2", Text},
    {"nombre_comercial", "Cli", "CLI_COMER", Text},
    {"nif", "Cli", "cli_doc", Text},
    {"forma_pago", "Cli", "CLI_FCO", Whole},
    {"descuento1", "Cli", "CLI_DTO1", Number},
    {"descuento2", "Cli", "CLI_DTO2", Number},
    {"observaciones", "Cli", "CLI_OBSER", Text},
    {"vendedor", "Cli", "CLI_IdAge", Whole},
    {"regimen_iva", "Cli", "Cli_Reg", Whole},
    {"cuenta", "Cli", "Cli_Cta", Text},
    {"banco", "Cli", "cli_ban", Whole},
    {"observaciones_factura", "Cli", "cli_FavObs", Text},
    {"dia_pago1", "Cli", "Cli_Di1", Whole},
    {"dia_pago2", "Cli", "Cli_Di2", Whole},
    {"mes_sin_pago", "Cli", "Cli_msp", Whole},
    {"tipo_via", "Dir", "DIR_SG", Text},
    {"via", "Dir", "DIR_NOMBRE", Text},
    {"numero", "Dir", "DIR_NUMERO", Whole},
    {"letra", "Dir", "DIR_LETRA", Text},
    {"bloque", "Dir", "DIR_BLOQUE", Text},
    {"escalera", "Dir", "DIR_ESCALERA", Text},
    {"piso", "Dir", "DIR_PISO", Text},
    {"puerta", "Dir", "DIR_PUERTA", Text},
    {"codigo_postal", "Dir", "DIR_CP", Text},
    {"poblacion", "Dir", "DIR_POBLACION", Text},
    {"provincia", "Dir", "DIR_PROVINCIA", Text},
    {"pais", "Dir", "DIR_PAIS", Text},
    {"lugar", "Dir", "DIR_COMER", Text},
};

}  // namespace

std::span<const Field> ArticleFields() { return kArticle; }
std::span<const Field> CustomerFields() { return kCustomer; }

std::string PlainValue(const Variant& value) {
  return value.IsNull() ? std::string() : value.ToPlainText();
}

double NumberOf(const std::string& plain) {
  double value = 0;
  std::from_chars(plain.data(), plain.data() + plain.size(), value);
  return value;
}

std::string Literal(const std::string& plain, FieldKind kind) {
  if (kind == Text) {
    const std::string quoted = sql::Quoted(plain);
    return quoted.starts_with('N') ? quoted : "N" + quoted;
  }
  if (plain.empty()) return "NULL";
  const bool whole = plain.find('.') == std::string::npos;
  return kind == Number && whole ? plain + ".0" : plain;
}

std::size_t MostCharacters(const Field& field) {
  const schema::Table& table = *schema::FindTable(field.table);
  return static_cast<std::size_t>(
      table.columns[static_cast<std::size_t>(table.Find(field.column))].length);
}

std::string FileNumber(double value) {
  std::string text = ToSpanish(value);
  const std::size_t comma = text.find(',');
  if (comma != std::string::npos && text.size() - comma == 4) text += '0';
  return text;
}

}  // namespace tpv::office
