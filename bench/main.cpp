// tpv_bench [PART] [--tickets N] [--small N] [--articles A] [--runs N] [--seconds S]
// [--rows NAME,NAME] [--in FOLDER],
// each part a table in Markdown:
//   machine    the machine it runs on
//   screens    the till against the same work done directly on the engine, on a
//              large store, and how much more it takes there than on a small one
//   tills      many tills on one store at once
//   plans      what each index is for and what it costs
//   capacity   how many tills one store carries, simulated
//   decade     the screens on ten stores of so many tickets in one, and what it
//              takes to look after it: three quarters of an hour and 40 GB. In a folder of its own the
//              store is kept, and another time its screens alone are measured
#include <algorithm>
#include <cstdio>

#include "adapters/files/temporary_folder.h"
#include "base/number_text.h"
#include "bench/capacity.h"
#include "bench/harness.h"
#include "bench/machine.h"
#include "bench/measures.h"
#include "bench/plans.h"
#include "bench/rivals.h"

namespace tpv::bench {
namespace {

struct Options {
  int tickets = 1000000;
  int small = 10000;
  int articles = 100000;
  int runs = 1000;
  int seconds = 4;
  std::string rows;  // that are measured; "" for all
  std::string in;    // where the decade's store is kept; "" for nowhere
};

Options Read(const std::vector<std::string>& words) {
  Options options;
  for (std::size_t i = 1; i + 1 < words.size(); i += 2) {
    const std::string& option = words[i];
    if (option == "--rows" || option == "--in") {
      (option == "--rows" ? options.rows : options.in) = words[i + 1];
      continue;
    }
    const int number = std::max(1, ParseInt32(words[i + 1]).value_or(1));
    (option == "--tickets"    ? options.tickets
     : option == "--small"    ? options.small
     : option == "--articles" ? options.articles
     : option == "--seconds"  ? options.seconds
                              : options.runs) = number;
  }
  return options;
}

void Decade(const Options& options) {
  const TemporaryFolder folder(std::filesystem::current_path());
  DecadeSize size;
  size.tickets = options.tickets;
  size.articles = options.articles;
  const std::string kept = options.in.empty() ? std::string(folder.path()) : options.in;
  MeasureDecade({folder / "poco.db", options.small}, kept + "/diez.db", size, options.runs, options.rows);
}

void Screens(const Options& options) {
  const TemporaryFolder folder(std::filesystem::current_path());
  MeasureStores({folder / "poco.db", options.small}, {folder / "mucho.db", options.tickets},
                options.articles, options.runs, options.rows);
}

int Main(int count, char** words) {
  const std::vector<std::string> rest(words + 1, words + count);
  const std::string part = rest.empty() ? "" : rest[0];
  if (part == "seller") return Sell({rest.begin() + 1, rest.end()});
  const Options options = Read(rest);
  if (part == "machine") {
    PrintMachine();
  } else if (part == "screens") {
    Screens(options);
  } else if (part == "tills") {
    MeasureRivals(options.seconds);
  } else if (part == "plans") {
    PrintPlans(options.tickets, options.articles);
  } else if (part == "capacity") {
    PrintCapacity();
  } else if (part == "decade") {
    Decade(options);
  } else {
    throw std::runtime_error("machine, screens, tills, plans, capacity or decade");
  }
  return 0;
}

}  // namespace
}  // namespace tpv::bench

int main(int count, char** words) { return tpv::bench::Guarded(count, words, tpv::bench::Main); }
