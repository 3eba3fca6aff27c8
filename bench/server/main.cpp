// tpv_server_bench CONNECTION: a scan through the till on a server's store
// against the very same statements sent straight to the driver.
// Needs a server; user and password come as for tpv itself.
#include <cstdio>
#include <stdexcept>

#include "adapters/odbc/target.h"
#include "base/text.h"
#include "bench/server/raw_line.h"
#include "bench/ten_line_sales.h"
#include "bench/till.h"
#include "host/server_store.h"

namespace tpv::bench {
namespace {

// Notes transactions among the statements.
class Tape : public RecordingConnection {
 public:
  using RecordingConnection::RecordingConnection;
  void BeginTrans() override {
    RecordingConnection::BeginTrans();
    sent.emplace_back("BEGIN TRANSACTION");
  }
  void CommitTrans() override {
    RecordingConnection::CommitTrans();
    sent.emplace_back("COMMIT TRANSACTION");
  }
};

// Plays back what the till has just sent.
class Echo {
 public:
  Echo(RecordingConnection& till, RawLine& line) : till_(till), line_(line) {}

  void Play() {
    for (const std::string& statement : till_.sent) line_.Run(Again(statement));
    till_.sent.clear();
  }

 private:
  // A line moves its stock once: the echo's moves belong to lines of its own.
  static std::string Again(const std::string& statement) {
    const bool moves_stock = statement.starts_with("INSERT INTO Movi");
    return moves_stock ? ReplaceAll(statement, "VALUES (", "VALUES (-") : statement;
  }

  RecordingConnection& till_;
  RawLine& line_;
};

int Main(int count, char** words) {
  if (count != 2) throw std::runtime_error("tpv_server_bench CONNECTION");
  constexpr int kArticles = 200;
  constexpr int kRuns = 200;
  const StepClock clock;
  PrepareServer(words[1], Contents::Demonstration, clock);
  const auto store = OpenServer(words[1]);
  Tape connection(*store);
  Till till(connection);
  TenLineSales<Till> sales(till, kArticles);
  RawLine line(odbc::LoginTo(odbc::ReadTarget(words[1])).text);
  Echo echo(connection, line);
  const Work scan{[&] {
                    sales.Prepare();
                    connection.sent.clear();
                  },
                  [&] { sales.Scan(); }};
  const Subject subject{"scan to stored and redrawn line, over loopback", 0, 0, 0, true};
  Print({Compare(subject, kRuns, scan, {{}, [&] { echo.Play(); }})});
  return 0;
}

}  // namespace
}  // namespace tpv::bench

int main(int count, char** words) {
  return tpv::bench::Guarded(count, words, tpv::bench::Main);
}
