#include "bench/plans.h"

#include <algorithm>
#include <cstdio>

#include "adapters/files/temporary_folder.h"
#include "adapters/headless/recorders.h"
#include "adapters/sqlite/ddl.h"
#include "adapters/sqlite/dialect/translator.h"
#include "adapters/sqlite/sqlite_connection.h"
#include "base/text.h"
#include "bench/direct_store.h"
#include "bench/harness.h"
#include "bench/heard.h"
#include "host/demo/demonstration.h"
#include "host/store.h"

namespace tpv::bench {

namespace {

constexpr int kRuns = 20;
constexpr int kRead = 100;
constexpr int kManyRows = 1000;
constexpr int kInserted = 2000;
constexpr std::size_t kTried = 6;  // statements an index
constexpr std::size_t kShown = 90;

struct Plan {
  std::string text;  // the statement
  std::string steps;
  int times = 0;
  bool writes = false;
};

std::string Steps(DirectStore& store, const std::string& sql) {
  std::string steps;
  sqlite3_stmt* statement = nullptr;
  const std::string explain = "EXPLAIN QUERY PLAN " + sql;
  if (sqlite3_prepare_v2(store.handle(), explain.c_str(), -1, &statement, nullptr) != SQLITE_OK)
    return {};
  while (sqlite3_step(statement) == SQLITE_ROW) {
    steps += reinterpret_cast<const char*>(sqlite3_column_text(statement, 3)) + std::string(";");
  }
  sqlite3_finalize(statement);
  return steps;
}

// Most often sent first. What the dialect refuses, as hostile scripts send it, is left out.
std::vector<Plan> PlansOf(const std::map<std::string, Heard>& heard, DirectStore& store) {
  std::vector<Plan> plans;
  for (const auto& [shape, statement] : heard) {
    try {
      const dialect::Translation translation = dialect::Translate(shape);
      plans.push_back(
          {statement.text, Steps(store, translation.text), statement.times, translation.writes});
    } catch (const DatabaseError&) {
      continue;
    }
  }
  std::sort(plans.begin(), plans.end(),
            [](const Plan& a, const Plan& b) { return a.times > b.times; });
  return plans;
}

// For a cell of a table.
std::string Short(const std::string& text) {
  const std::string plain = ReplaceAll(ReplaceAll(text, "|", "/"), "  ", " ");
  return plain.size() <= kShown ? plain : Left(plain, kShown) + "…";
}

class IndexTrial {
 public:
  IndexTrial(const schema::Table& table, const schema::Index& index, DirectStore& store,
             Connection& till)
      : table_(table),
        name_(schema::IndexName(table, index)),
        unique_(index.unique),
        store_(store),
        till_(till) {}

  // Whether anything uses it; prints its row then.
  bool Print(const std::vector<Plan>& plans) {
    std::vector<const Plan*> users;
    for (const Plan& plan : plans) {
      // A longer name may begin with this one.
      const bool uses = plan.steps.find(name_ + " (") != std::string::npos ||
                        plan.steps.find(name_ + ";") != std::string::npos;
      if (uses && users.size() < kTried) users.push_back(&plan);
    }
    if (users.empty()) return false;
    std::vector<double> with;
    for (const Plan* user : users) with.push_back(Time(*user));
    const double insert_with = InsertTime();
    store_.Run(("DROP INDEX main." + name_).c_str());
    const double insert_without = InsertTime();
    std::size_t best = 0;
    std::vector<double> without;
    for (std::size_t i = 0; i < users.size(); ++i) {
      without.push_back(Time(*users[i]));
      if (without[i] / with[i] > without[best] / with[best]) best = i;
    }
    MakeAgain();
    std::printf("| %s | %s | %.1f | %.1f | %.0f | %s |\n", name_.c_str(),
                Short(users[best]->text).c_str(), with[best], without[best],
                without[best] / with[best], Cost(insert_with - insert_without).c_str());
    return true;
  }

 private:
  // Copies of rows are none where a number is given once only.
  std::string Cost(double microseconds) const {
    if (unique_) return "unique";
    char text[20];
    std::snprintf(text, sizeof text, "%.2f", std::max(0.0, microseconds));
    return text;
  }

  // Microseconds to the rows that a screen may show; what it writes is undone.
  double Time(const Plan& plan) {
    return Measure({}, kRuns,
                   {[&] { till_.BeginTrans(); },
                    [&] {
                      const auto rows = till_.Execute(plan.text);
                      for (int row = 0; row < kRead && !rows->Eof(); ++row) rows->MoveNext();
                    },
                    [&] { till_.RollbackTrans(); }})
        .till.median;
  }

  // Microseconds a row, over copies of the newest ones; undone.
  double InsertTime() {
    std::string columns;
    for (std::size_t i = table_.identity ? 1 : 0; i < table_.columns.size(); ++i) {
      columns += (columns.empty() ? "" : ", ") + std::string(table_.columns[i].name);
    }
    const std::string name = "main." + std::string(table_.name);
    const std::string insert = "INSERT OR IGNORE INTO " + name + " (" + columns + ") SELECT " +
                               columns + " FROM " + name + " ORDER BY rowid DESC LIMIT " +
                               std::to_string(kInserted);
    const double all =
        Measure({}, 15,
                {[&] { store_.Run("BEGIN IMMEDIATE"); }, [&] { store_.Run(insert.c_str()); },
                 [&] { store_.Run("ROLLBACK"); }})
            .till.median;
    return all / std::max(1, std::min(kInserted, sqlite3_changes(store_.handle())));
  }

  void MakeAgain() {
    for (const std::string& statement : SqliteDdl(table_, "main")) {
      if (statement.find("\"" + name_ + "\"") != std::string::npos) store_.Run(statement.c_str());
    }
  }

  const schema::Table& table_;
  std::string name_;
  bool unique_;
  DirectStore& store_;
  Connection& till_;
};

// Tables of some size that a plan goes through from end to end.
std::string WholeTables(const Plan& plan, DirectStore& store) {
  std::string names;
  for (const schema::Table& table : schema::Tables()) {
    const std::string name(table.name);
    const std::string scan = "SCAN " + name;
    if (plan.steps.find(scan + ";") == std::string::npos &&
        plan.steps.find(scan + " USING") == std::string::npos) {
      continue;
    }
    Prepared count(store, ("SELECT COUNT(*) FROM " + name).c_str());
    if (count() >= kManyRows) names += " " + name;
  }
  return names;
}

}  // namespace

void PrintPlans(int tickets, int articles) {
  const StepClock clock;
  const TemporaryFolder folder(std::filesystem::current_path());
  const std::string path = folder / "tienda.db";
  MakeLargeStore(path, {tickets, std::max(1, tickets / 1000), articles, 1}, clock);
  DirectStore store(path, clock);
  SqliteConnection till(path, clock);
  const std::vector<Plan> plans = PlansOf(HearScenarios("scenarios"), store);
  std::printf(
      "Indexes on a store of %d tickets, and the statement that each helps most, of %zu that the "
      "scenarios send:\n\n| index | statement | with, µs | without, µs | times | a row inserted, "
      "µs more |\n"
      "|---|---|---|---|---|---|\n",
      tickets, plans.size());
  std::string unused;
  for (const schema::Table& table : schema::Tables()) {
    for (const schema::Index& index : table.indexes) {
      if (!IndexTrial(table, index, store, till).Print(plans))
        unused += " " + schema::IndexName(table, index);
    }
  }
  std::printf(
      "\nUsed by no statement of a screen:%s.\n\nStatements that read a whole table of %d rows or "
      "more:\n\n"
      "| statement | times sent | table |\n|---|---|---|\n",
      unused.empty() ? " none" : unused.c_str(), kManyRows);
  for (const Plan& plan : plans) {
    const std::string names = WholeTables(plan, store);
    if (!names.empty())
      std::printf("| %s | %d |%s |\n", Short(plan.text).c_str(), plan.times, names.c_str());
  }
  std::fflush(stdout);
}

}  // namespace tpv::bench
