#include "office/people/customers.h"

#include "data/sql_text.h"
#include "office/people/customer_form.h"
#include "office/people/customer_prices.h"
#include "platform/database.h"

namespace tpv::office {

CustomerList::CustomerList(Context& context)
    : RecordList(context, {"frmClientes",
                           "Clientes",
                           {{"Código", 900}, {"Cliente", 3800}, {"Nombre comercial", 2600}, {"NIF", 1300},
                            {"Población", 2000}},
                           "Cli"}) {
  AddButtons({&cmdPrecios});
  cmdPrecios.click = [this] { ShowPrices(); };
}

std::string CustomerList::Statement() const {
  return "SELECT CLI_ID, CLI_COD, (CLI_NOM + ' ' + ISNULL(CLI_APE1,'') + ' ' + ISNULL(CLI_APE2,'')) AS Nombre, "
         "CLI_COMER, cli_doc, DIR_POBLACION FROM Cli LEFT JOIN Dir ON DIR_ID = (SELECT MIN(CLIDIR_DIR) FROM CliDir "
         "WHERE CLIDIR_CLI = CLI_ID) ORDER BY CLI_COD";
}

std::unique_ptr<RecordForm> CustomerList::FormOf(std::int32_t id) {
  return std::make_unique<CustomerForm>(context(), id);
}

std::string CustomerList::Kept(std::int32_t id) {
  const auto counter = Database().Execute("SELECT TOP 1 CLI_ID FROM Cli INNER JOIN Parametros ON Par_CliCon = CLI_COD "
                                          "WHERE CLI_ID = " + sql::Number(std::int64_t{id}));
  return counter->Eof() ? "" : "Es el cliente de contado: elija antes otro en los parámetros";
}

void CustomerList::ShowPrices() {
  if (Marked() == 0) return;
  CustomerPriceList prices(context(), Marked(), MarkedText(1));
  context().ports.ui.ShowModal(prices);
}

}  // namespace tpv::office
