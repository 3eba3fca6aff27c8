#include "office/terms/tax_rates.h"

#include "base/date_time.h"
#include "data/tax_kinds.h"
#include "office/terms/tax_rate_form.h"
#include "platform/database.h"

namespace tpv::office {

TaxRateList::TaxRateList(Context& context)
    : RecordList(context, {"frmTiposIva",
                           "Tipos de IVA",
                           {{"Clase", 900}, {"% IVA", 1200, "0.00"}, {"% Recargo", 1200, "0.00"}, {"Desde", 1600},
                            {"Estado", 2500}}}) {}

std::string TaxRateList::Statement() const {
  return "SELECT rate.Tiva_Id, rate.tiva_art, rate.Tiva_iva, ISNULL(twin.Tiva_rec, rate.Tiva_rec), rate.Tiva_Fecha "
         "FROM zrcomun.dbo.tivas AS rate LEFT JOIN zrcomun.dbo.tivas AS twin ON twin.tiva_reg = 2 AND "
         "twin.tiva_art = rate.tiva_art AND twin.Tiva_Fecha = rate.Tiva_Fecha WHERE rate.tiva_reg = 1 "
         "ORDER BY rate.tiva_art, rate.Tiva_Fecha DESC";
}

// The newest first, kind by kind.
ui::PackedRows TaxRateList::Rows() {
  auto records = Records();
  const TaxKinds today = TaxKindsToday(Database());
  std::int32_t kind = 0;
  bool past = false;  // the one in force was met
  for (std::vector<Variant>& row : records) {
    past = past && row[1].IntOr(0) == kind;
    kind = row[1].IntOr(0);
    const auto current = today.find(kind);
    const bool in_force = current != today.end() && current->second.id == row[0].ToInt32();
    row.emplace_back(in_force ? "Vigente" : past ? "Anterior" : "Aún no rige");
    past = past || in_force;
    row[4] = Variant(ToDayFirst(row[4].ToDate()));
  }
  return records;
}

std::unique_ptr<RecordForm> TaxRateList::FormOf(std::int32_t id) { return std::make_unique<TaxRateForm>(context(), id); }

}  // namespace tpv::office
