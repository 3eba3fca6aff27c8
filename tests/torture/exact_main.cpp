// tpv_exact TICKETS SEED: random tickets whose every amount the component, its
// store and its invoices have to give to the cent of a calculation in whole numbers.
// The store's floats may miss a half of money's fourth decimal: such a cent is
// counted. Exit status 1 when anything else differs; says where and by how much.
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <map>
#include <random>

#include "base/text.h"
#include "data/sql_text.h"
#include "data/statements.h"
#include "sale/article_lookup.h"
#include "sale/sale_storage.h"
#include "tests/test_shop.h"

namespace tpv::torture {
namespace {

__extension__ typedef __int128 Wide;

// The quotient as a whole number, halves away from zero.
std::int64_t Rounded(Wide number, Wide divisor) {
  const Wide twice = number < 0 ? -number * 2 : number * 2;
  const auto size = static_cast<std::int64_t>((twice + divisor) / (divisor * 2));
  return number < 0 ? -size : size;
}

struct Cents {
  std::int64_t cents;
  bool at_half = false;  // a half that a float may lie just below of
};

// A value read as money, which has four decimals, and then rounded.
Cents AsMoney(Wide value, Wide euro = 1'000'000) {
  const std::int64_t money = Rounded(value * 10'000, euro);
  return {Rounded(money, 100), value * 20'000 % euro == 0 && value * 20'000 / euro % 2 != 0};
}

struct Rate {
  int id;
  std::int64_t percent, surcharge;  // hundredths
};
constexpr Rate kRates[] = {{1, 2100, 520}, {2, 1000, 140}, {3, 400, 50}, {4, 0, 0},
                           {5, 750, 100},  {6, 1050, 0},   {7, 5, 0},    {8, 1675, 275}};

// Thousandths of a unit and of a euro, hundredths of a percent.
struct Line {
  Rate rate;
  std::int64_t units, price, discount;

  std::int64_t Amount() const {
    const Wide full = Wide{units} * price;
    return Rounded(full, 10'000) - Rounded(full * discount, 100'000'000);
  }
  Cents WithTax() const { return AsMoney(Wide{Amount()} * (10'000 + rate.percent)); }
  std::int64_t PriceWithTax() const {
    const std::int64_t with_tax = Rounded(Wide{price} * (10'000 + rate.percent), 100'000);
    return Rounded(Wide{with_tax} * 100'000 + Wide{price} * rate.surcharge, 100'000);
  }
};

double Euros(std::int64_t number, double scale) { return static_cast<double>(number) / scale; }

class Exact {
 public:
  explicit Exact(std::uint64_t seed) : random_(seed) {
    for (const Rate& rate : kRates) {
      Run("INSERT INTO zrcomun.dbo.tivas (Tiva_iva, Tiva_rec) VALUES (" + Hundredths(rate.percent) +
          ", " + Hundredths(rate.surcharge) + ")");
    }
    Run("INSERT INTO Cav (Cav_Serie, Cav_Numero, Cav_Ticket, Cav_Cobrado, Cav_IdFactura) "
        "VALUES ('T', 1, 1, 0, 1)");
  }

  void Ticket() {
    constexpr int kLines[] = {1, 2, 3, 4, 30};
    const Transaction undone(store_.connection());
    std::vector<Line> lines(kLines[Below(5)]);
    for (Line& line : lines) Sell(line = RandomLine());
    Lists(lines);
    if (Below(20) == 0) Invoice(lines);
  }

  int Report() const {
    bool all_right = true;
    for (const auto& [rule, count] : rules_) {
      std::cout << rule << ": " << count.right << " exact, " << count.drifted
                << " at a half off by up to " << count.furthest;
      if (!count.example.empty()) std::cout << ", WRONG " << count.example;
      std::cout << "\n";
      all_right &= count.example.empty();
    }
    return all_right ? 0 : 1;
  }

 private:
  struct Count {
    long right = 0;
    long drifted = 0;
    double furthest = 0;
    std::string example;  // of what is wrong
  };

  static std::string Hundredths(std::int64_t number) { return sql::Number(Euros(number, 100)); }
  std::int64_t Below(std::int64_t end) {
    return std::uniform_int_distribution<std::int64_t>(0, end - 1)(random_);
  }
  std::unique_ptr<Recordset> Run(const std::string& sql) { return store_.connection().Execute(sql); }

  // Most of a shop's lines are a few pieces; some are weighed, returned, or large.
  Line RandomLine() {
    constexpr std::int64_t kDearest[] = {10'000, 10'000, 100'000, 10'000'000};
    Line line{kRates[Below(8)], (1 + Below(9)) * 1000, Below(kDearest[Below(4)]), 0};
    if (Below(4) == 0) line.units = Below(20'000);
    if (Below(20) == 0) line.units = Below(1'000'000);
    if (Below(6) == 0) line.units = -line.units;
    if (Below(3) == 0) line.discount = Below(2) == 0 ? Below(101) * 100 : Below(10'001);
    return line;
  }

  void Sell(const Line& line) {
    SaleLine sold;
    sold.units = Euros(line.units, 1000);
    sold.net_price = Euros(line.price, 1000);
    sold.discount = ReplaceAll(Hundredths(line.discount), ".", ",");
    Compare("line amount", sold.Amount(), {line.Amount()}, line);
    const Tax tax{line.rate.id, Euros(line.rate.percent, 100), Euros(line.rate.surcharge, 100)};
    const std::int64_t shown = line.PriceWithTax();
    Compare("price with tax", PriceWithTax(sold.net_price, tax), {shown}, line);
    Compare("net price", NetPrice(Euros(shown, 100), tax.rate, 3),
            {Rounded(Wide{shown} * 10'000, Rounded(10'000 + line.rate.percent, 10))}, line, 1000);
    Run("INSERT INTO Lav (Lav_IdCav, Lav_Uni, Lav_precio, Lav_DTo1, Lav_Importe, Lav_Tiva) VALUES (1, " +
        sql::Number(sold.units) + ", " + sql::Number(sold.net_price) + ", " +
        Hundredths(line.discount) + ", " + sql::Number(sold.Amount()) + ", " +
        std::to_string(line.rate.id) + ")");
  }

  // What screens, lists and paper read of the ticket's lines and of the ticket.
  void Lists(const std::vector<Line>& lines) {
    const std::string from = " FROM Cav INNER JOIN Lav ON Lav_IdCav = Cav_Id INNER JOIN "
                             "zrcomun.dbo.tivas on Tiva_Id = Lav_Tiva WHERE Cav_Id = 1";
    const auto rows = Run("SELECT dbo.FncPrecioConIva(lav_Id), dbo.FncImporteConIva(lav_Id), ROUND(cast("
                          "lav_Importe + (lav_Importe /100 * Tiva_iva) as money),2)" + from + " ORDER BY Lav_Id");
    std::int64_t base = 0;
    Cents shown{0};
    Wide tax = 0;  // millionths
    for (const Line& line : lines) {
      const Wide price = Wide{line.price} * (10'000 + line.rate.percent);
      Compare("dbo.FncPrecioConIva", rows->Field(0), AsMoney(price, 10'000'000), line);
      Compare("dbo.FncImporteConIva", rows->Field(1), line.WithTax(), line);
      Compare("line with tax of lists", rows->Field(2), line.WithTax(), line);
      base += line.Amount();
      tax += Wide{line.Amount()} * line.rate.percent;
      shown = {shown.cents + line.WithTax().cents, shown.at_half || line.WithTax().at_half};
      rows->MoveNext();
    }
    const SaleTotals totals = ReadSaleTotals(store_.connection(), 1);
    Compare("base of the sale", totals.base, {base}, lines[0]);
    Compare("total of the sale", totals.total, shown, lines[0]);
    const auto sums = Run("SELECT ROUND(cast(SUM(lav_Importe) as money),2), ROUND(cast(sum((lav_Importe "
                          "/100 * Tiva_iva)) as money),2), " + std::string(kAmountWithTax) + from);
    Compare("base of a ticket", sums->Field(0), {base}, lines[0]);
    Compare("tax of a ticket", sums->Field(1), AsMoney(tax), lines[0]);
    Compare("ticket with tax", sums->Field(2), AsMoney(Wide{base} * 10'000 + tax), lines[0]);
  }

  // Base and tax of an invoice's rate come from what its lines came to, as they were paid.
  void Invoice(const std::vector<Line>& lines) {
    std::map<std::int64_t, Cents> by_rate;
    for (const Line& line : lines) {
      Cents& total = by_rate[line.rate.percent];
      total = {total.cents + line.WithTax().cents, total.at_half || line.WithTax().at_half};
    }
    const auto invoice = shop_.Create("ZRFACTUVEN.ZRFACVENTAS");
    invoice->Put("IdFactU", Variant(1));
    for (const char* step : {"CalculoTotalesFactura", "GrabaFactura"}) invoice->Call(step, {});
    const auto rows = Run("SELECT Fai_Base, Fai_Cuota FROM Fai WHERE Fai_IdFav = 1 ORDER BY Fai_Iva");
    for (const auto& [rate, total] : by_rate) {
      const std::int64_t base = Rounded(Wide{total.cents} * 10'000, 10'000 + rate);
      Compare("base of a rate", rows->Field(0), {base, total.at_half}, lines[0]);
      Compare("tax of a rate", rows->Field(1), {total.cents - base, total.at_half}, lines[0]);
      rows->MoveNext();
    }
  }

  void Compare(const char* rule, const Variant& found, const Cents& expected, const Line& line,
               int scale = 100) {
    Count& count = rules_[rule];
    const double off = std::fabs(found.ToDouble() - Euros(expected.cents, scale));
    if (off < 0.01 / scale) {
      ++count.right;
    } else if (expected.at_half) {
      ++count.drifted;
      count.furthest = std::max(count.furthest, off);
    } else {
      count.example = "by " + sql::Number(off) + ": " + std::to_string(line.units) + " x " +
                      std::to_string(line.price) + " thousandths, less " + Hundredths(line.discount) +
                      " %, at " + Hundredths(line.rate.percent) + " %: " + found.ToPlainText();
    }
  }

  TestStore store_;
  TestShop shop_{store_.connection(), store_.clock()};
  std::mt19937_64 random_;
  std::map<std::string, Count> rules_;
};

}  // namespace
}  // namespace tpv::torture

int main(int argc, char** argv) {
  const long tickets = argc > 1 ? std::atol(argv[1]) : 1000;
  tpv::torture::Exact exact(argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1);
  for (long i = 0; i < tickets; ++i) exact.Ticket();
  return exact.Report();
}
