#include "data/journal.h"

#include "context/context.h"
#include "platform/database.h"

namespace tpv {

RowBuilder& RowInTransaction(Context& context, const char* table) {
  RowBuilder& row = context.MyBd->NuevaSentencia();
  row.Tabla(table);
  row.BeginTrans(false);
  return row;
}

void InsertOrThrow(RowBuilder& row) {
  std::string error;
  if (!row.Insert(error)) throw DatabaseError(error);
}

void UpdateOrThrow(RowBuilder& row) {
  std::string error;
  if (!row.Update(error)) throw DatabaseError(error);
}

std::int32_t LastEntry(Context& context) {
  return context.Database().Execute("SELECT MAX(DiaCaj_Id) FROM DiaCaj")->Field(0).ToInt32();
}

void LinkTicket(Context& context, std::int32_t entry, std::int32_t ticket, double euros,
                const Variant& note) {
  RowBuilder& row = RowInTransaction(context, "Tco");
  row.Add("Tco_IdDiaCaj", ValueKind::Whole, Variant(entry));
  row.Add("Tco_IdCav", ValueKind::Whole, Variant(ticket));
  row.Add("Tco_Importe", ValueKind::Amount, Variant(euros));
  row.Add("Tco_Obs", ValueKind::Text, note);
  InsertOrThrow(row);
}

}  // namespace tpv
