#include "host/demo/demonstration.h"

#include <vector>

#include "base/rounding.h"
#include "host/demo/catalogue.h"
#include "host/demo/fill.h"

namespace tpv {

namespace {

using demo::Insert;
using demo::Null;

constexpr int kDays = 14;
constexpr int kTills = 3;

void FillParameters(Connection& connection) {
  Insert(connection, "Parametros",
         "Par_NumCaja, Par_CliCon, Par_SerTic, Par_SerTicFac, Par_Alma, Par_Rapida, par_decpre, "
         "par_deccan, Par_Impre, Par_PCajon, Par_SCajon, Par_Nombre, Par_Sg, Par_NombreVia, "
         "Par_Cp, Par_Poblacion, Par_Telefono, Par_Doc, par_tpvemail",
         {1, 1, "T", "FT", 1, 1, 2, 2, 2, 0, "27,112,0,25,250", "ULTRAMARINOS LA ESQUINA", "CL",
          "Mayor 12", "30001", "Murcia", "968 123 456", "B30123452", ""});
}

// One working period of a till: opening, sales, closure.
class TillDay {
 public:
  TillDay(Connection& connection, int day, int till, const DateTime& date, int& next_number)
      : connection_(connection),
        dice_(static_cast<std::uint64_t>(day * 10 + till)),
        till_(till),
        agent_(1 + (day + till) % demo::kAgents),
        moment_(date),
        next_number_(next_number) {
    moment_.hour = 9;
  }

  void Fill() {
    Event("0", 0, 1, {0, 0, 0, 0, 0}, kOpening);
    const int tickets = 6 + dice_.Roll(6);
    for (int ticket = 0; ticket < tickets; ++ticket) Sell();
    Close();
  }

 private:
  struct Amounts {
    double cash, card, change, discount, collected;
  };
  static constexpr double kOpening = 100;

  void Advance() { moment_ = AddSeconds(moment_, 600 + dice_.Roll(1800)); }

  int Id(const char* statement) { return connection_.Execute(statement)->Field(0).ToInt32(); }

  int Event(const char* type, int customer, int mode, const Amounts& amounts, double opening) {
    Insert(connection_, "DiaCaj",
           "DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_IdUsu, DiaCaj_IdAge, DiaCaj_IdCliPr, DiaCaj_Tipo, "
           "DiaCaj_Modo, DiaCaj_Entrega, DiaCaj_Tarjeta, DiaCaj_Devolucion, DiaCaj_Descuento, "
           "DiaCaj_Cobrado, DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, DiaCaj_Ret",
           {moment_, till_, 1, agent_, customer, type, mode, amounts.cash, amounts.card,
            amounts.change, amounts.discount, amounts.collected, opening, 0, 0, 0, 0});
    return Id("SELECT MAX(DiaCaj_Id) FROM DiaCaj");
  }

  void Sell() {
    Advance();
    const int kind = dice_.Roll(10);
    const bool on_credit = kind == 9;
    const int customer = on_credit || kind == 8 ? 2 + dice_.Roll(demo::kCustomers) : 1;
    const int sale = Header(customer, !on_credit);
    double total = 0;
    for (int line = 1 + dice_.Roll(6); line > 0; --line) total += Line(sale);
    total = RoundHalfAway(total, 2);
    if (!on_credit) Pay(sale, customer, kind, total);
  }

  int Header(int customer, bool collected) {
    connection_.Execute(
        "INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Ref, Cav_Caja, Cav_Agente, "
        "Cav_IdCli, Cav_NFiscal, Cav_NCom, Cav_CliDoc, Cav_Ticket, Cav_Situa, Cav_Cobrado) SELECT "
        "'T', " + std::to_string(next_number_++) + ", " + demo::Sql(moment_).text + ", '" +
        std::to_string(till_) + "', " + std::to_string(till_) + ", " + std::to_string(agent_) +
        ", CLI_ID, LEFT(CLI_NOM + ' ' + ISNULL(CLI_APE1,'') + ' ' + ISNULL(CLI_APE2,''),50), "
        "CLI_COMER, cli_doc, 1, 1, " + (collected ? "1" : "0") +
        " FROM Cli WHERE CLI_ID = " + std::to_string(customer));
    return Id("SELECT MAX(Cav_Id) FROM Cav");
  }

  double Line(int sale) {
    const int article = 1 + dice_.Roll(demo::kArticles);
    const double units = 1 + dice_.Roll(3);
    const double price = demo::NetPriceOf(article);
    const double amount = RoundHalfAway(units * price, 2);
    const int tax = demo::TaxClassOf(article);
    Insert(connection_, "Lav",
           "Lav_IdCav, Lav_Idart, Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, Lav_Importe, "
           "Lav_Tiva",
           {sale, article, demo::CodeOf(article), demo::NameOf(article), units, price, 0.0, amount, tax});
    return RoundHalfAway(amount + amount / 100 * demo::RateOf(tax), 2);
  }

  void Pay(int sale, int customer, int kind, double total) {
    Amounts amounts{};
    int mode = 1;
    if (kind < 5) {
      const double handed = 5 * (1 + static_cast<int>(total / 5));
      amounts = {handed, 0, RoundHalfAway(handed - total, 2), 0, total};
    } else if (kind < 8) {
      mode = 2;
      amounts = {0, total, 0, 0, total};
    } else {
      mode = 3;
      const double card = RoundHalfAway(total / 2, 2);
      amounts = {RoundHalfAway(total - card, 2), card, 0, 0, total};
    }
    cash_ += amounts.cash - amounts.change;
    card_ += amounts.card;
    const int entry = Event("1", customer, mode, amounts, 0);
    Insert(connection_, "Tco", "Tco_IdDiaCaj, Tco_IdCav, Tco_Importe", {entry, sale, total});
    entries_.push_back(entry);
  }

  void Close() {
    Advance();
    cash_ = RoundHalfAway(cash_, 2);
    Insert(connection_, "DiaCaj",
           "DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_IdUsu, DiaCaj_IdAge, DiaCaj_IdCliPr, DiaCaj_Tipo, "
           "DiaCaj_Modo, DiaCaj_Obs, DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, "
           "DiaCaj_Ret",
           {moment_, till_, 1, agent_, 0, 9, 1, "Cierre de caja " + ToDayFirst(moment_), kOpening,
            cash_, RoundHalfAway(card_, 2), 0, cash_});
    const std::string closure = std::to_string(Id("SELECT MAX(DiaCaj_Id) FROM DiaCaj"));
    for (const int entry : entries_) {
      connection_.Execute("UPDATE DiaCaj SET DiaCaj_IdCierre = " + closure +
                          " WHERE DiaCaj_Id = " + std::to_string(entry));
    }
  }

  Connection& connection_;
  demo::Dice dice_;
  int till_;
  int agent_;
  DateTime moment_;
  int& next_number_;
  double cash_ = 0;
  double card_ = 0;
  std::vector<int> entries_;
};

}  // namespace

void FillDemonstration(Connection& connection, const DateTime& now) {
  demo::FillCatalogue(connection);
  demo::FillPeople(connection);
  FillParameters(connection);
  int next_number = 1;
  for (int day = kDays; day > 0; --day) {
    const DateTime date = AddDays({now.year, now.month, now.day}, -day);
    for (int till = 1; till <= kTills; ++till) {
      TillDay(connection, day, till, date, next_number).Fill();
    }
  }
}

}  // namespace tpv
