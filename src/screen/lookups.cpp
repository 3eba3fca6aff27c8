#include "screen/lookups.h"

#include <algorithm>
#include <stdexcept>

#include "base/number_text.h"
#include "base/text.h"
#include "context/context.h"
#include "data/sql_text.h"
#include "platform/database.h"
#include "platform/ui/controls.h"
#include "platform/ui/front_end.h"

namespace tpv {

namespace {

constexpr std::string_view kCustomerSelect =
    "SELECT TOP 1 Cli_ID,Cli_COD,(CLI_NOM + ' ' + ISNULL(CLI_APE1,'') + ' ' + "
    "ISNULL(CLI_APE2,'')) AS cli_nom ,cli_comer,CLI_FCO,CLI_DTO1,CLI_DTO2,"
    "CLI_OBSER,CLI_IdAge,cli_doc,Cli_Reg, "
    "DIR_SG , DIR_NOMBRE, DIR_NUMERO, DIR_LETRA, DIR_BLOQUE, DIR_ESCALERA, DIR_PISO, DIR_PUERTA, "
    "DIR_CP, DIR_PAIS, DIR_PROVINCIA, DIR_POBLACION, DIR_COMER "
    "FROM Cli "
    "LEFT JOIN CliDir ON CLIDIR_CLI=CLI_ID "
    "LEFT JOIN Dir ON DIR_ID = CLIDIR_DIR "
    "WHERE";

bool AsksForFiscalName(Context& context) {
  ui::MessageBox box;
  box.text = "Desea Buscar por el nombre Fiscal ?." + std::string(kLineBreak) +
             "Si contesta NO, la busqueda será por Nombre Comercial";
  box.icon = ui::Icon::Information;
  box.buttons = {ui::Answer::Yes, ui::Answer::No};
  box.default_button = ui::Answer::Yes;
  return context.ports.ui.Show(box) == ui::Answer::Yes;
}

NameSearch CustomerSearch(bool fiscal, Offered offered) {
  NameSearch search;
  if (offered == Offered::InUse) search.leaves_out = "Cli";
  search.first_caption = "Codigo";
  search.second_caption = "Cliente";
  if (fiscal) {
    search.statement =
        "Select CLI_ID,CLI_COD,(CLI_NOM + ' ' + ISNULL(CLI_APE1,'') + ' ' + "
        "ISNULL(CLI_APE2,'')) AS RSOC FROM CLI";
    search.search_column = "RSOC";
    search.title = "Buscar clientes por nombre Fiscal";
  } else {
    search.statement = "Select CLI_ID,CLI_COD,CLI_COMER FROM CLI ORDER BY CLI_COMER";
    search.search_column = "CLI_COMER";
    search.title = "Buscar clientes por nombre Comercial";
  }
  return search;
}

// Column `index` of the row chosen in a search dialog as a number, 0 for none.
std::int32_t Chosen(const std::string& row, std::size_t index) {
  if (Length(row) < 3) return 0;
  return Int32OrZero(Split(row, std::string(1, kColumnSeparator)).at(index));
}

std::int32_t SearchAgent(FormToolkit& toolkit, Offered offered) {
  NameSearch search;
  if (offered == Offered::InUse) search.leaves_out = "Age";
  search.id_column = 1;
  search.statement = "Select (0), Age_ID,Age_Nom FROM Age";
  search.search_column = "Age_Nom";
  search.first_caption = "Codigo";
  search.second_caption = "Agente";
  search.title = "Buscar agente por nombre";
  return Chosen(toolkit.BuscarPorNombre(search), 1);
}

std::optional<CustomerRecord> FirstCustomer(Context& context, const std::string& statement) {
  const auto row = context.Database().Execute(statement);
  if (row->Eof()) return std::nullopt;
  return CustomerRecord(*row);
}

}  // namespace

CustomerRecord::CustomerRecord(const Recordset& row) : values_(row.Fields()) {
  names_.reserve(values_.size());
  for (std::size_t i = 0; i < values_.size(); ++i) names_.push_back(row.FieldName(i));
}

const Variant& CustomerRecord::operator[](std::string_view field) const {
  const auto found = std::find_if(names_.begin(), names_.end(),
                                  [&](std::string_view name) { return EqualNoCase(name, field); });
  if (found == names_.end()) throw std::out_of_range(std::string(field));
  return values_[static_cast<std::size_t>(found - names_.begin())];
}

std::optional<CustomerRecord> FindCustomer(Context& context, FormToolkit& toolkit,
                                           std::int32_t code, std::int32_t& id, Offered offered) {
  if (code == -1 && id == 0) {
    id = Chosen(toolkit.BuscarPorNombre(CustomerSearch(AsksForFiscalName(context), offered)), 0);
  }
  if (id == 0 && code < 0) return std::nullopt;
  const std::string condition = id != 0 ? " Cli_id = " + sql::Number(std::int64_t{id})
                                        : " Cli_COD = " + sql::Number(std::int64_t{code});
  return FirstCustomer(context, std::string(kCustomerSelect) + condition);
}

std::optional<CustomerRecord> CustomerByCode(Context& context, std::int32_t code) {
  return FirstCustomer(context,
                       "SELECT * FROM cli WHERE cli_cod = " + sql::Number(std::int64_t{code}));
}

bool LookUpAgent(Context& context, FormToolkit& toolkit, std::int32_t id, ui::TextBox& code,
                 ui::TextBox& name, Offered offered) {
  if (id == 0) id = SearchAgent(toolkit, offered);
  if (id == 0) {
    if (Int32OrZero(code.text) == 0) {
      code.text = name.text.empty() ? std::string() : std::to_string(context.IdAgente);
    }
    return !name.text.empty();
  }
  context.IdAgente = 0;  // nobody, should the look-up fail
  name.text.clear();
  const auto row = context.Database().Execute(
      "SELECT Age_ID,Age_NOM,Age_Reg FROM Age WHERE  Age_id = " + sql::Number(std::int64_t{id}));
  const bool found = !row->Eof();
  if (found) context.IdAgente = row->Field("Age_id").IntOr(0);
  code.text = found ? std::to_string(context.IdAgente) : std::string();
  if (found) name.text = row->Field("age_Nom").TextOr("");
  return found;
}

}  // namespace tpv
