#include "cash/cash_count.h"

#include <sstream>

#include "base/mask.h"
#include "base/rounding.h"
#include "context/context.h"
#include "data/insert_row.h"

namespace tpv {

namespace {

// "5000x2 100x7": cents and pieces of what there was.
std::string PiecesText(const CashCount& count) {
  std::string text;
  for (std::size_t i = 0; i < count.pieces.size(); ++i) {
    if (count.pieces[i] == 0) continue;
    if (!text.empty()) text += ' ';
    text += std::to_string(kDenominations[i]) + 'x' + std::to_string(count.pieces[i]);
  }
  return text;
}

void ReadPieces(const std::string& text, CashCount& count) {
  std::istringstream words(text);
  std::int64_t cents = 0;
  std::int32_t pieces = 0;
  for (char times = 0; words >> cents >> times >> pieces;) {
    for (std::size_t i = 0; i < kDenominations.size(); ++i) {
      if (kDenominations[i] == cents) count.pieces[i] = pieces;
    }
  }
}

}  // namespace

double CashCount::Counted() const {
  std::int64_t cents = 0;
  for (std::size_t i = 0; i < pieces.size(); ++i) cents += kDenominations[i] * pieces[i];
  return static_cast<double>(cents) / 100;
}

double CashCount::Difference() const { return RoundHalfAway(Counted() - expected, 2); }

void StoreCashCount(Context& context, std::int32_t closure_id, const CashCount& count) {
  sql::InsertRow(
      context.Database(), "Arqueos",
      "Arq_IdCierre, Arq_Esperado, Arq_Contado, Arq_Diferencia, Arq_Piezas",
      {closure_id, count.expected, count.Counted(), count.Difference(), PiecesText(count)});
}

std::optional<CashCount> ReadCashCount(Context& context, std::int32_t closure_id) {
  const auto row = context.Database().Execute(
      "SELECT Arq_Esperado, Arq_Piezas FROM Arqueos WHERE Arq_IdCierre = " +
      sql::Number(std::int64_t{closure_id}));
  if (row->Eof()) return std::nullopt;
  CashCount count;
  count.expected = row->Field("Arq_Esperado").NumberOr(0);
  ReadPieces(row->Field("Arq_Piezas").TextOr(""), count);
  return count;
}

std::string DenominationText(std::size_t index) {
  return FormatNumber(static_cast<double>(kDenominations.at(index)) / 100, "0.00");
}

}  // namespace tpv
