#include "sale/payment_methods.h"

#include "base/mask.h"
#include "base/number_text.h"
#include "base/text.h"
#include "platform/database.h"

namespace tpv {

std::vector<std::string> PaymentMethods(Connection& connection) {
  std::vector<std::string> entries = {"00 - Sin asignar"};
  const auto rows = connection.Execute("Select * from Fco");
  for (; !rows->Eof(); rows->MoveNext()) {
    entries.push_back(Format(rows->Field("Fco_Id"), "00") + " - " +
                      rows->Field("Fco_Des").TextOr(""));
  }
  return entries;
}

void SelectPaymentMethod(ui::ComboBox& combo, std::int32_t code) {
  combo.SelectIf([code](const std::string& entry) { return LeadingNumber(Left(entry, 2)) == code; });
}

}  // namespace tpv
