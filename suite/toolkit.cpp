#include "suite/toolkit.h"

#include <algorithm>
#include <utility>

#include "base/date_time.h"
#include "base/mask.h"
#include "base/number_text.h"
#include "base/rounding.h"
#include "base/text.h"
#include "data/retired.h"
#include "platform/clock.h"
#include "platform/database.h"
#include "platform/ui/front_end.h"

namespace tpv::suite {

namespace {

constexpr std::u32string_view kDateCharacters = U"/+hoyaerHOYAER";  // 1/12, +3, hoy, ayer

std::size_t ColumnOf(const Recordset& rows, std::string_view name) {
  for (std::size_t i = 0; i < rows.FieldCount(); ++i) {
    if (EqualNoCase(rows.FieldName(i), name)) return i;
  }
  throw DatabaseError("La búsqueda no tiene la columna «" + std::string(name) + "»");
}

std::vector<std::vector<Variant>> ReadAll(Recordset& rows) {
  std::vector<std::vector<Variant>> all;
  for (; !rows.Eof(); rows.MoveNext()) {
    std::vector<Variant>& row = all.emplace_back();
    for (std::size_t i = 0; i < rows.FieldCount(); ++i) row.push_back(rows.Field(i));
  }
  return all;
}

// Ordered by the search column, as an operator looks for a name.
void Order(std::vector<std::vector<Variant>>& rows, std::size_t column) {
  std::vector<std::pair<std::string, std::size_t>> keys;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    keys.emplace_back(FoldForSearch(rows[i][column].ToText()), i);
  }
  std::sort(keys.begin(), keys.end());
  std::vector<std::vector<Variant>> ordered;
  ordered.reserve(rows.size());
  for (const auto& [key, index] : keys) ordered.push_back(std::move(rows[index]));
  rows = std::move(ordered);
}

void LeaveOut(std::vector<std::vector<Variant>>& rows, const std::set<std::int32_t>& retired, std::size_t id_column) {
  std::erase_if(rows, [&](const std::vector<Variant>& row) { return retired.contains(row[id_column].IntOr(0)); });
}

std::string Joined(const std::vector<Variant>& row) {
  std::string text;
  for (const Variant& value : row) text += value.ToText() + kColumnSeparator;
  text.pop_back();
  return text;
}

}  // namespace

void Toolkit::SetFocusColours(std::uint32_t focused, std::uint32_t plain) {
  focused_ = focused;
  plain_ = plain;
}

std::string Toolkit::BuscarPorNombre(const NameSearch& search) {
  ui::SearchRequest request;
  std::vector<std::vector<Variant>> all;
  try {
    ui::LongWork work(front_end_, search.title);
    work.Stage("Leyendo la lista");
    const auto rows = connection_->Execute(search.statement);
    request.search_column = ColumnOf(*rows, search.search_column);
    all = ReadAll(*rows);
    if (!search.leaves_out.empty()) {
      LeaveOut(all, RetiredOf(*connection_, search.leaves_out), search.id_column);
    }
  } catch (const GivenUp&) {
    return {};
  }
  Order(all, request.search_column);
  request.rows = std::exchange(all, {});
  request.title = search.title;
  request.captions = {search.first_caption, search.second_caption};
  request.widths = {search.first_width, search.second_width};
  request.shown_columns = {1, 2};
  const auto chosen = front_end_.Search(request);
  return chosen ? Joined(request.rows[*chosen].Values()) : std::string();
}

double Toolkit::Redondear(double value, int decimals) const {
  return RoundHalfAway(value, std::clamp(decimals, 0, 15));
}

std::string Toolkit::ValidarFecha(std::string_view text) const {
  const auto date = ParseTypedDate(text, clock_.Now());
  return date ? ToDayFirst(*date) : std::string(text);
}

char32_t Toolkit::FiltrarTecla(std::string_view, char32_t key, FieldKind kind) const {
  if (key >= U'0' && key <= U'9') return key;
  if (kind == FieldKind::Date) return kDateCharacters.find(key) != std::u32string_view::npos ? key : 0;
  if (kind == FieldKind::Text) return key;
  return key == U',' || key == U'.' ? U',' : 0;
}

std::string Toolkit::FormatearImporte(std::string_view text) const {
  const auto number = ParseNumber(text);
  return number ? FormatNumber(*number, "#0.00") : std::string(text);
}

}  // namespace tpv::suite
