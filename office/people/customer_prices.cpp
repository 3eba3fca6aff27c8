#include "office/people/customer_prices.h"

#include "base/rounding.h"
#include "base/text.h"
#include "data/decimals.h"
#include "data/sql_text.h"
#include "data/tax_kinds.h"
#include "office/people/customer_price_form.h"
#include "platform/database.h"

namespace tpv::office {

CustomerPriceList::CustomerPriceList(Context& context, std::int32_t customer_id, const std::string& customer)
    : RecordList(context, {"frmPreciosCliente",
                           "Precios propios",
                           {{"Código", 1800},
                            {"Artículo", 4800},
                            {"Precio tienda", 1400, "#,##0.00"},
                            {"Su precio", 1400, "#,##0.00"},
                            {"% Dto", 900, "0.00"}}}),
      customer_id_(customer_id) {
  caption = "Precios propios de " + Trim(customer);
  AddButtons({&cmdQuitar});
  cmdQuitar.click = [this] { Remove(); };
}

std::string CustomerPriceList::Statement() const {
  return "SELECT art_id, ART_Cod, art_des, art_pve, artcli_fijo, artcli_dto1, art_tiva FROM artcli "
         "INNER JOIN ART ON art_id = artcli_idart WHERE artcli_idcli = " + sql::Number(std::int64_t{customer_id_}) +
         " ORDER BY art_des, art_id";
}

// With tax, as the sale screen shows them.
ui::PackedRows CustomerPriceList::Rows() {
  auto records = Records();
  const TaxKinds taxes = TaxKindsToday(Database());
  const int decimals = PriceDecimals(context());
  for (std::vector<Variant>& row : records) {
    const auto kind = taxes.find(row.back().IntOr(0));
    const Tax tax = kind == taxes.end() ? Tax{} : kind->second;
    for (Variant* price : {&row[3], &row[4]}) {
      if (price->IsNull()) continue;
      *price = Variant(PriceWithTax(RoundHalfAway(price->ToDouble(), decimals), tax));
    }
    row.pop_back();
  }
  return records;
}

std::unique_ptr<RecordForm> CustomerPriceList::FormOf(std::int32_t id) {
  return std::make_unique<CustomerPriceForm>(context(), customer_id_, id);
}

// No ticket refers to it: a line has the price that it was sold at.
void CustomerPriceList::Remove() {
  if (Marked() == 0) return;
  const std::string question = "¿Desea quitar el precio propio de «" + MarkedText(1) + "»?";
  if (!Confirm(question, ui::Icon::Question, ui::Answer::No)) return;
  try {
    Database().Execute("DELETE FROM artcli WHERE artcli_idcli = " + sql::Number(std::int64_t{customer_id_}) +
                       " AND artcli_idart = " + sql::Number(std::int64_t{Marked()}));
  } catch (const DatabaseError& error) {
    return Refuse("No se ha podido grabar." + std::string(kLineBreak) + error.what(), nullptr, ui::Icon::Critical);
  }
  Read();
}

}  // namespace tpv::office
