#include "host/demo/demonstration.h"

#include <algorithm>

#include "adapters/files/private_files.h"
#include "data/decimals.h"
#include "host/demo/catalogue.h"
#include "host/demo/fill.h"
#include "host/demo/till_day.h"

namespace tpv {

namespace {

using demo::Insert;
using demo::Null;

constexpr int kDays = 14;
constexpr int kTicketsInAll = 360;
constexpr int kTills = 3;

// A counter that counts nothing: the mark of a demonstration, in every copy of it too.
constexpr const char* kMark = "DEMO";

void FillParameters(Connection& connection) {
  Insert(connection, "Parametros",
         "Par_NumCaja, Par_CliCon, Par_SerTic, Par_SerTicFac, Par_Alma, Par_Rapida, par_decpre, "
         "par_deccan, Par_Impre, Par_PCajon, Par_SCajon, Par_Nombre, Par_Sg, Par_NombreVia, "
         "Par_Cp, Par_Poblacion, Par_Telefono, Par_Doc, par_tpvemail",
         {1, 1, "T", "FT", 1, 1, kNewShopPriceDecimals, 2, 2, 0, "27,112,0,25,250", "ULTRAMARINOS LA ESQUINA", "CL",
          "Mayor 12", "30001", "Murcia", "968 123 456", "B30123452", ""});
  Insert(connection, "Contadores", "cont_tipo, cont_serie, cont_numero", {kMark, "", 0});
}

struct Past {
  int days;
  int tickets;
  int articles;
  std::uint64_t seed;
  demo::Habits habits;
};

// Tickets spread over the days before `now` and over the tills.
demo::Ledger FillPast(Connection& connection, const Past& past, const DateTime& now) {
  demo::Ledger ledger;
  const int till_days = past.days * kTills;
  for (int till_day = 0; till_day < till_days; ++till_day) {
    const int day = till_day / kTills;
    demo::TillDayPlan plan;
    plan.date = AddDays({now.year, now.month, now.day}, day - past.days);
    plan.till = 1 + till_day % kTills;
    plan.agent = 1 + (day + plan.till) % demo::kAgents;
    plan.tickets = past.tickets / till_days + (till_day < past.tickets % till_days ? 1 : 0);
    plan.articles = past.articles;
    plan.seed = past.seed + static_cast<std::uint64_t>(till_day);
    plan.habits = past.habits;
    demo::FillTillDay(connection, plan, ledger);
  }
  return ledger;
}

}  // namespace

void FillDemonstration(Connection& connection, const DateTime& now) {
  demo::FillCatalogue(connection, demo::kArticles);
  demo::FillPeople(connection);
  FillParameters(connection);
  FillPast(connection, {kDays, kTicketsInAll, demo::kArticles, 0, {}}, now);
}

bool IsDemonstration(Connection& connection) {
  const std::string mark = "SELECT cont_numero FROM Contadores WHERE cont_tipo = '" + std::string(kMark) + "'";
  return !connection.Execute(mark)->Eof();
}

std::string BannerOf(Connection& connection) { return IsDemonstration(connection) ? kDemonstration : ""; }

std::string DemonstrationStore() { return DataFolder() + "/demo/tienda.db"; }

void FillLarge(Connection& connection, const LargeStore& size, const DateTime& now) {
  demo::FillCatalogue(connection, size.articles);
  demo::FillPeople(connection);
  FillParameters(connection);
  const demo::Habits habits{9, std::min(5000, size.tickets / 20), true};
  const demo::Ledger ledger =
      FillPast(connection, {size.days, size.tickets, size.articles, size.seed, habits}, now);
  const char* columns = "cont_tipo, cont_serie, cont_numero";
  Insert(connection, "Contadores", columns, {"ALBVENTA", "T", ledger.sales});
  Insert(connection, "Contadores", columns, {"FACTURA", "FT", ledger.invoices});
}

}  // namespace tpv
