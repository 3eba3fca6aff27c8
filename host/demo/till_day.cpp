#include "host/demo/till_day.h"

#include <algorithm>
#include <vector>

#include "base/rounding.h"
#include "data/codes.h"
#include "host/demo/catalogue.h"
#include "host/demo/invoiced_sale.h"

namespace tpv::demo {

namespace {

struct Amounts {
  double cash, card, change, discount, collected;
};

constexpr double kOpening = 100;

// With tax to the cent, by way of the four decimals that money has.
double WithTax(double amount, int tax_class) {
  return RoundHalfAway(RoundHalfAway(amount + amount / 100 * RateOf(tax_class), 4), 2);
}

// One working period of a till: opening, sales, closure.
class TillDay {
 public:
  TillDay(Connection& connection, const TillDayPlan& plan, Ledger& ledger)
      : connection_(connection),
        plan_(plan),
        ledger_(ledger),
        dice_(plan.seed),
        moment_(plan.date),
        pause_(kWorkingSeconds / (plan.tickets + 2)) {
    moment_.hour = 9;
  }

  void Fill() {
    Event(JournalEvent::Opening, 0, 1, {0, 0, 0, 0, 0});
    for (int ticket = 0; ticket < plan_.tickets; ++ticket) {
      Sell();
      if (ledger_.open > plan_.habits.most_open) Collect();
    }
    if (plan_.habits.keeps_books) PayOut();
    Close();
  }

 private:
  static constexpr int kWorkingSeconds = 11 * 3600;

  void Advance() { moment_ = AddSeconds(moment_, pause_ / 2 + dice_.Roll(pause_ + 1)); }

  int Id(const char* statement) { return connection_.Execute(statement)->Field(0).ToInt32(); }

  int Event(JournalEvent type, int customer, int mode, const Amounts& amounts,
            const Sql& note = Null()) {
    Insert(
        connection_, "DiaCaj",
        "DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_IdUsu, DiaCaj_IdAge, DiaCaj_IdCliPr, DiaCaj_Tipo, "
        "DiaCaj_Modo, DiaCaj_Entrega, DiaCaj_Tarjeta, DiaCaj_Devolucion, DiaCaj_Descuento, "
        "DiaCaj_Cobrado, DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, DiaCaj_Ret, "
        "DiaCaj_Obs",
        {moment_, plan_.till, 1, plan_.agent, customer, static_cast<int>(type), mode, amounts.cash,
         amounts.card, amounts.change, amounts.discount, amounts.collected,
         type == JournalEvent::Opening ? kOpening : 0, 0, 0, 0, 0, note});
    return Id("SELECT MAX(DiaCaj_Id) FROM DiaCaj");
  }

  void Sell() {
    Advance();
    const int kind = dice_.Roll(10);
    const bool on_credit = kind == 9;
    const int customer = on_credit || kind == 8 ? 2 + dice_.Roll(kCustomers) : 1;
    const bool invoiced = plan_.habits.keeps_books && customer > 1 && dice_.Roll(10) == 0;
    const int sale = ++ledger_.sales;
    Header(customer, !on_credit, invoiced ? ++ledger_.invoices : 0);
    std::vector<SoldLine> lines;
    double total = 0;
    for (int line = 1 + dice_.Roll(plan_.habits.most_lines); line > 0; --line) {
      lines.push_back(Line(sale));
      total += lines.back().total;
    }
    total = RoundHalfAway(total, 2);
    if (plan_.habits.keeps_books) MoveStock(sale);
    if (invoiced) {
      FillInvoice(connection_,
                  {ledger_.invoices, sale, customer, "T/" + std::to_string(sale), moment_}, lines);
    }
    on_credit ? Owe(customer, {sale, total}) : Pay(sale, customer, kind, total);
  }

  void Header(int customer, bool collected, int invoice) {
    std::string values;
    for (const Sql& value :
         {Sql("T"), Sql(ledger_.sales), Sql(moment_), Sql(std::to_string(plan_.till)),
          Sql(plan_.till), Sql(plan_.agent), Sql(1), Sql(invoice > 0 ? 2 : 1), Sql(invoice),
          Sql(collected ? 1 : 0)}) {
      values += value.text + ", ";
    }
    connection_.Execute(
        "INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Fecha, Cav_Ref, Cav_Caja, Cav_Agente, "
        "Cav_Ticket, "
        "Cav_Situa, Cav_IdFactura, Cav_Cobrado, Cav_IdCli, Cav_NFiscal, Cav_NCom, Cav_CliDoc) "
        "SELECT " +
        values +
        "CLI_ID, LEFT(CLI_NOM + ' ' + ISNULL(CLI_APE1,'') + ' ' + ISNULL(CLI_APE2,''),50), "
        "CLI_COMER, cli_doc FROM Cli WHERE CLI_ID = " +
        std::to_string(customer));
  }

  SoldLine Line(int sale) {
    const int article = 1 + dice_.Roll(plan_.articles);
    const double units = 1 + dice_.Roll(3);
    const double price = NetPriceOf(article);
    const double amount = RoundHalfAway(units * price, 2);
    const int tax = TaxClassOf(article);
    Insert(connection_, "Lav",
           "Lav_IdCav, Lav_Idart, Lav_CodArt, Lav_Des, Lav_Uni, Lav_precio, Lav_DTo1, Lav_Importe, "
           "Lav_Tiva",
           {sale, article, CodeOf(article), NameOf(article), units, price, 0.0, amount, tax});
    return {article, units, price, amount, WithTax(amount, tax)};
  }

  void MoveStock(int sale) {
    connection_.Execute(
        "INSERT INTO Movi (movi_idlav, movi_idart, movi_idalma, movi_uni) SELECT Lav_Id, "
        "Lav_Idart, 1, Lav_Uni FROM Lav WHERE Lav_IdCav = " +
        std::to_string(sale));
  }

  void Owe(int customer, const Debt& debt) {
    ledger_.debts[customer].push_back(debt);
    ++ledger_.open;
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
    Link(Take(JournalEvent::TicketCollection, customer, mode, amounts), sale, total);
  }

  int Take(JournalEvent type, int customer, int mode, const Amounts& amounts,
           const Sql& note = Null()) {
    cash_ += amounts.cash - amounts.change;
    card_ += amounts.card;
    return Gathered(Event(type, customer, mode, amounts, note));
  }

  // The closure will stamp it.
  int Gathered(int entry) {
    if (first_entry_ == 0) first_entry_ = entry;
    return last_entry_ = entry;
  }

  void Link(int entry, int sale, double amount) {
    Insert(connection_, "Tco", "Tco_IdDiaCaj, Tco_IdCav, Tco_Importe", {entry, sale, amount});
  }

  // Some customer pays his oldest tickets, one time in five only half of the last.
  void Collect() {
    int customer = 2 + dice_.Roll(kCustomers);
    while (ledger_.debts[customer].empty()) customer = 2 + (customer - 1) % kCustomers;
    std::deque<Debt>& debts = ledger_.debts[customer];
    const std::size_t most = 1 + static_cast<std::size_t>(dice_.Roll(4));
    std::vector<Debt> paid(debts.begin(),
                           debts.begin() + static_cast<long>(std::min(most, debts.size())));
    if (dice_.Roll(5) == 0) paid.back().amount = RoundHalfAway(paid.back().amount / 2, 2);
    Advance();
    Collect(customer, paid);
  }

  void Collect(int customer, const std::vector<Debt>& paid) {
    double total = 0;
    for (const Debt& debt : paid) total = RoundHalfAway(total + debt.amount, 2);
    const int entry = Take(JournalEvent::PendingCollection, customer, 1, {total, 0, 0, 0, total},
                           "Cobro de " + std::to_string(customer) + " Ventas varias");
    for (const Debt& debt : paid) {
      Link(entry, debt.sale, debt.amount);
      Settle(customer, debt);
    }
  }

  // Against the customer's oldest debt.
  void Settle(int customer, const Debt& paid) {
    Debt& debt = ledger_.debts[customer].front();
    debt.amount = RoundHalfAway(debt.amount - paid.amount, 2);
    if (debt.amount > 0) return;
    connection_.Execute("UPDATE Cav SET Cav_Cobrado = 1 WHERE Cav_Id = " +
                        std::to_string(paid.sale));
    ledger_.debts[customer].pop_front();
    --ledger_.open;
  }

  void PayOut() {
    paid_out_ = 5 + dice_.Roll(20);
    Gathered(
        Event(JournalEvent::PaymentOut, 0, 1, {paid_out_, 0, 0, 0, paid_out_}, "Pago de portes"));
  }

  void Close() {
    Advance();
    cash_ = RoundHalfAway(cash_, 2);
    Insert(
        connection_, "DiaCaj",
        "DiaCaj_Fecha, DiaCaj_Caja, DiaCaj_IdUsu, DiaCaj_IdAge, DiaCaj_IdCliPr, DiaCaj_Tipo, "
        "DiaCaj_Modo, DiaCaj_Obs, DiaCaj_SaldoIni, DiaCaj_CobMet, DiaCaj_CobTar, DiaCaj_Pagos, "
        "DiaCaj_Ret",
        {moment_, plan_.till, 1, plan_.agent, 0, 9, 1, "Cierre de caja " + ToDayFirst(moment_),
         kOpening, cash_, RoundHalfAway(card_, 2), paid_out_, RoundHalfAway(cash_ - paid_out_, 2)});
    if (first_entry_ == 0) return;
    connection_.Execute("UPDATE DiaCaj SET DiaCaj_IdCierre = " +
                        std::to_string(Id("SELECT MAX(DiaCaj_Id) FROM DiaCaj")) +
                        " WHERE DiaCaj_Id >= " + std::to_string(first_entry_) +
                        " AND DiaCaj_Id <= " + std::to_string(last_entry_));
  }

  Connection& connection_;
  const TillDayPlan& plan_;
  Ledger& ledger_;
  Dice dice_;
  DateTime moment_;
  int pause_;  // seconds between two tickets, more or less
  double cash_ = 0;
  double card_ = 0;
  double paid_out_ = 0;
  int first_entry_ = 0;
  int last_entry_ = 0;
};

}  // namespace

void FillTillDay(Connection& connection, const TillDayPlan& plan, Ledger& ledger) {
  TillDay(connection, plan, ledger).Fill();
}

}  // namespace tpv::demo
