#include "screen/sold_totals.h"

#include "base/mask.h"
#include "context/form_toolkit.h"
#include "data/statements.h"
#include "platform/database.h"
#include "platform/pulse.h"

namespace tpv {

LineTax LineTaxBy(const FormToolkit& toolkit) {
  return [&toolkit](double amount, double rate) { return toolkit.Redondear(amount * (rate / 100), 2); };
}

SoldTotals ReadSold(Connection& connection, const std::string& days, const LineTax& tax_of) {
  SoldTotals sold;
  const auto lines = connection.Execute(SoldLines(days));
  for (; !lines->Eof(); lines->MoveNext()) {
    Pulse();
    const double amount = lines->Field(0).NumberOr(0);
    const double tax = tax_of(amount, lines->Field(1).NumberOr(0));
    sold.base += amount;
    sold.taxes += tax;
    sold.total += amount + tax;
  }
  return sold;
}

void ShowSold(ui::TextBoxes& boxes, const SoldTotals& sold) {
  boxes[10].text = FormatNumber(sold.base, "0.00");
  boxes[3].text = FormatNumber(sold.taxes, "0.00");
  boxes[8].text = FormatNumber(sold.total, "0.00");
}

std::string SoldCountCaption(const Variant& count) {
  return "Totales del informe: Numero de ventas " + FormatNumber(count.NumberOr(0), "#,###,##0");
}

}  // namespace tpv
