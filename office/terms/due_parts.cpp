#include "office/terms/due_parts.h"

#include <algorithm>
#include <cmath>

#include "data/insert_row.h"

namespace tpv::office {

namespace {

std::string OfMethod(std::int32_t method) {
  return " FROM Plazos WHERE plazo_idfco = " + sql::Number(std::int64_t{method});
}

double EvenShare(const std::vector<DuePart>& parts) { return 100.0 / static_cast<double>(parts.size()); }

}  // namespace

std::vector<DuePart> ReadDueParts(Connection& connection, std::int32_t method) {
  std::vector<DuePart> parts;
  const auto rows = connection.Execute("SELECT plazo_dias, plazo_por" + OfMethod(method) + " ORDER BY plazo_dias");
  for (; !rows->Eof(); rows->MoveNext()) parts.push_back({rows->Field(0).IntOr(0), rows->Field(1).NumberOr(0)});
  return parts;
}

void StoreDueParts(Connection& connection, std::int32_t method, int mode, const std::vector<DuePart>& parts) {
  connection.Execute("DELETE" + OfMethod(method));
  for (const DuePart& part : parts) {
    sql::InsertRow(connection, "Plazos", "plazo_idfco, plazo_modo, plazo_dias, plazo_por",
                   {method, mode, part.days, part.share > 0 ? part.share : EvenShare(parts)});
  }
}

bool AreEven(const std::vector<DuePart>& parts) {
  constexpr double kTolerance = 0.005;
  return std::all_of(parts.begin(), parts.end(), [&](const DuePart& part) {
    return part.share <= 0 || std::abs(part.share - EvenShare(parts)) < kTolerance;
  });
}

}  // namespace tpv::office
