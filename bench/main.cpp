// tpv_bench [--tickets N] [--runs N]: the till against the same work done
// directly on the engine, on a store of that size.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "adapters/files/temporary_folder.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "base/mask.h"
#include "base/number_text.h"
#include "bench/closing_bench.h"
#include "bench/direct_till.h"
#include "bench/harness.h"
#include "bench/lists.h"
#include "bench/ten_line_sales.h"
#include "bench/till.h"
#include "host/demo/demonstration.h"
#include "host/store.h"

namespace tpv::bench {
namespace {

void RequireSameDebt(Till& till, DirectTill& direct) {
  for (const int customer : {2, 10, 30}) {
    if (std::fabs(till.Debt(customer) - direct.Debt(customer)) > 0.005) {
      throw std::runtime_error("the two sides disagree on what is owed");
    }
  }
}

std::vector<Row> Measure(const std::string& path, int articles, int runs) {
  const StepClock clock;
  SqliteConnection connection(path, clock);
  Till till(connection);
  DirectStore store(path, clock);
  DirectTill direct(store);
  TenLineSales<Till> sales(till, articles);
  TenLineSales<DirectTill> direct_sales(direct, articles);
  RequireSameDebt(till, direct);
  std::vector<Row> rows;
  rows.push_back(Compare("scan to stored and redrawn line (10-line ticket)", runs, sales.Scanning(),
                         direct_sales.Scanning()));
  till.Finish();
  direct.Finish();
  rows.push_back(Compare("finish a sale, checkout open to printed text", runs / 5, sales.Finishing(),
                         direct_sales.Finishing()));
  rows.push_back(Compare("is the till open", runs, {{}, [&] { till.IsOpen(); }},
                         {{}, [&] { direct.TillState(); }}));
  rows.push_back(Compare("what a customer owes", runs / 5, {{}, [&] { till.Debt(5); }},
                         {{}, [&] { direct.Debt(5); }}));
  rows.push_back(CompareClosing(till, store, 10000, 20));
  connection.SetSynchronous(false);
  store.Run("PRAGMA synchronous = OFF");
  rows.push_back(Compare("scan, synchronous writes off", runs, sales.Scanning(),
                         direct_sales.Scanning()));
  return rows;
}

int Main(int count, char** words) {
  LargeStore size;
  int runs = 1000;
  for (int i = 1; i + 1 < count; i += 2) {
    const std::string option = words[i];
    const int number = ParseInt32(words[i + 1]).value_or(0);
    (option == "--tickets" ? size.tickets : option == "--articles" ? size.articles : runs) = number;
  }
  const TemporaryFolder folder(std::filesystem::current_path());
  MakeLargeStore(folder / "tienda.db", size, StepClock());
  std::printf("A store of %d tickets and %d articles, %d runs\n\n", size.tickets, size.articles, runs);
  Print(Measure(folder / "tienda.db", size.articles, runs));
  std::printf("\nLists of a month, 30,000 tickets and 150,000 lines, and of a day\n\n");
  std::vector<Row> lists = MeasureMonth(folder.path(), std::max(5, runs / 100));
  for (Row& row : MeasureGrowth(folder.path(), size.tickets, std::max(5, runs / 10))) {
    lists.push_back(std::move(row));
  }
  Print(lists);
  return 0;
}

}  // namespace
}  // namespace tpv::bench

int main(int count, char** words) {
  return tpv::bench::Guarded(count, words, tpv::bench::Main);
}
