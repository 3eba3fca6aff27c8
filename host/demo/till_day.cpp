#include "host/demo/till_day.h"

#include "base/rounding.h"
#include "host/demo/catalogue.h"

namespace tpv::demo {

namespace {

struct Amounts {
  double cash, card, change, discount, collected;
};

constexpr double kOpening = 100;

// One working period of a till: opening, sales, closure.
class TillDay {
 public:
  TillDay(Connection& connection, const TillDayPlan& plan, int& next_number)
      : connection_(connection),
        dice_(plan.seed),
        till_(plan.till),
        agent_(plan.agent),
        articles_(plan.articles),
        moment_(plan.date),
        pause_(kWorkingSeconds / (plan.tickets + 2)),
        next_number_(next_number) {
    moment_.hour = 9;
  }

  void Fill(int tickets) {
    Event("0", 0, 1, {0, 0, 0, 0, 0}, kOpening);
    for (int ticket = 0; ticket < tickets; ++ticket) Sell();
    Close();
  }

 private:
  static constexpr int kWorkingSeconds = 11 * 3600;

  void Advance() { moment_ = AddSeconds(moment_, pause_ / 2 + dice_.Roll(pause_ + 1)); }

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
    const int customer = on_credit || kind == 8 ? 2 + dice_.Roll(kCustomers) : 1;
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
        "'T', " + std::to_string(next_number_++) + ", " + Sql(moment_).text + ", '" +
        std::to_string(till_) + "', " + std::to_string(till_) + ", " + std::to_string(agent_) +
        ", CLI_ID, LEFT(CLI_NOM + ' ' + ISNULL(CLI_APE1,'') + ' ' + ISNULL(CLI_APE2,''),50), "
        "CLI_COMER, cli_doc, 1, 1, " + (collected ? "1" : "0") +
        " FROM Cli WHERE CLI_ID = " + std::to_string(customer));
    return Id("SELECT MAX(Cav_Id) FROM Cav");
  }

  double Line(int sale) {
    const int article = 1 + dice_.Roll(articles_);
    const double units = 1 + dice_.Roll(3);
    const double price = NetPriceOf(article);
    const double amount = RoundHalfAway(units * price, 2);
    const int tax = TaxClassOf(article);
    Insert(connection_, "Lav",
           "Lav_IdCav, Lav_Idart, Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, Lav_Importe, "
           "Lav_Tiva",
           {sale, article, CodeOf(article), NameOf(article), units, price, 0.0, amount, tax});
    return RoundHalfAway(amount + amount / 100 * RateOf(tax), 2);
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
    last_entry_ = entry;
    if (first_entry_ == 0) first_entry_ = entry;
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
    if (first_entry_ == 0) return;
    connection_.Execute("UPDATE DiaCaj SET DiaCaj_IdCierre = " +
                        std::to_string(Id("SELECT MAX(DiaCaj_Id) FROM DiaCaj")) +
                        " WHERE DiaCaj_Id >= " + std::to_string(first_entry_) + " AND DiaCaj_Id <= " +
                        std::to_string(last_entry_));
  }

  Connection& connection_;
  Dice dice_;
  int till_;
  int agent_;
  int articles_;
  DateTime moment_;
  int pause_;  // seconds between two tickets, more or less
  int& next_number_;
  double cash_ = 0;
  double card_ = 0;
  int first_entry_ = 0;
  int last_entry_ = 0;
};

}  // namespace

void FillTillDay(Connection& connection, const TillDayPlan& plan, int& next_number) {
  TillDay(connection, plan, next_number).Fill(plan.tickets);
}

}  // namespace tpv::demo
