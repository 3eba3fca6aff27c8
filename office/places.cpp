#include "office/places.h"

#include "base/mask.h"
#include "data/insert_row.h"

namespace tpv::office {

namespace {

struct Coded {
  const char* code;
  const char* name;
};

constexpr Coded kCountries[] = {
#include "office/countries.inc"
};

constexpr const char* kProvinces[] = {
#include "office/provinces.inc"
};

constexpr Coded kStreetTypes[] = {{"AL", "ALAMEDA"},  {"AV", "AVENIDA"},     {"BO", "BARRIO"},
                                  {"CL", "CALLE"},    {"CM", "CAMINO"},      {"CR", "CARRETERA"},
                                  {"GL", "GLORIETA"}, {"PJ", "PASAJE"},      {"PS", "PASEO"},
                                  {"PZ", "PLAZA"},    {"PG", "POLÍGONO"},    {"RD", "RONDA"},
                                  {"TR", "TRAVESÍA"}, {"UR", "URBANIZACIÓN"}};

}  // namespace

void FillPlaces(Connection& connection) {
  for (const auto& [code, name] : kStreetTypes) {
    sql::InsertRow(connection, "zrcomun.dbo.TVI", "TVI_COD, TVI_NOM", {code, name});
  }
  for (const auto& [code, name] : kCountries) {
    sql::InsertRow(connection, "zrcomun.dbo.PAIS", "PAIS_COD, PAIS_NOM", {code, name});
  }
  int number = 0;
  for (const char* name : kProvinces) {
    sql::InsertRow(connection, "zrcomun.dbo.PROV", "PROV_COD, PROV_NOM",
                   {FormatNumber(++number, "00"), name});
  }
}

}  // namespace tpv::office
