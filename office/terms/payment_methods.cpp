#include "office/terms/payment_methods.h"

#include "base/number_text.h"
#include "data/retired.h"
#include "data/sql_text.h"
#include "office/forms/counted.h"
#include "office/terms/payment_method_form.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

// "30 y 60 días", "al contado", "0 días (40 %) y 60 días (60 %)".
std::string Described(const std::vector<DuePart>& parts) {
  if (parts.empty() || (parts.size() == 1 && parts[0].days == 0)) return "al contado";
  const bool even = AreEven(parts);
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) text += i + 1 == parts.size() ? " y " : ", ";
    text += std::to_string(parts[i].days);
    if (!even) text += " días (" + ToSpanish(parts[i].share) + " %)";
  }
  return even ? text + " días" : text;
}

}  // namespace

PaymentMethodList::PaymentMethodList(Context& context)
    : RecordList(context, {"frmFormasPago",
                           "Formas de pago",
                           {{"Número", 1000}, {"Nombre", 3500}, {"Vencimientos", 5000}},
                           "Fco"}) {}

std::string PaymentMethodList::Statement() const { return "SELECT Fco_Id, Fco_Id, Fco_Des FROM Fco ORDER BY Fco_Id"; }

ui::PackedRows PaymentMethodList::Rows() {
  auto records = Records();
  for (std::vector<Variant>& row : records) {
    row.emplace_back(Described(ReadDueParts(Database(), row[0].ToInt32())));
  }
  return records;
}

std::unique_ptr<RecordForm> PaymentMethodList::FormOf(std::int32_t id) {
  return std::make_unique<PaymentMethodForm>(context(), id);
}

std::string PaymentMethodList::Kept(std::int32_t id) {
  constexpr std::int32_t kOfNewCustomers = 1;
  if (id == kOfNewCustomers) return "Es la de los clientes que se dan de alta en la caja";
  const auto having = Database().Execute("SELECT COUNT(*) FROM Cli WHERE CLI_FCO = " + sql::Number(std::int64_t{id}) +
                                         " AND " + NotRetired("Cli", "CLI_ID"));
  const auto count = static_cast<std::size_t>(having->Field(0).ToInt32());
  if (count == 0) return {};
  return "Está en la ficha de " + Counted(count, "cliente", "clientes") + ": cámbiela antes allí";
}

}  // namespace tpv::office
