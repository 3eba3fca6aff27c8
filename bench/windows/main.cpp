// tpv_windows_bench: what the operator waits for in the windows, each beside the
// same thing in an empty window of the same libraries. On the platform without a
// screen: painting counts, the display does not.
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "adapters/files/temporary_folder.h"
#include "adapters/qt/search_dialog.h"
#include "bench/harness.h"
#include "bench/till.h"
#include "bench/windows/long_lists.h"
#include "bench/windows/window_till.h"
#include "host/demo/catalogue.h"
#include "host/store.h"
#include "host/windows/application.h"

namespace tpv::bench {
namespace {

constexpr std::size_t kLines = 200;

void EnterAgent(WindowTill& till) {
  till.Focus("Text1(0)");
  qt::SendText("1");
  Press(ui::Key::Enter);
}

std::vector<Row> MeasureKeys(const std::string& path) {
  std::vector<Row> rows;
  WindowTill till(path);
  const StepClock clock;
  SqliteConnection connection(path, clock);
  Till unseen(connection, 2);
  till.Sell([&] {
    auto& form = till.form();
    EnterAgent(till);
    till.Click("cmdNueva");
    for (std::size_t line = 0; line < kLines; ++line) Scan();
    QWidget* window = QApplication::activeWindow();
    EmptyWindow empty(window);
    const auto back = [&] {
      window->activateWindow();
      qt::SettleWindows();
      qt::SendStroke({Qt::Key_A, Qt::ControlModifier, ""});  // what comes takes the text's place
      Paint();
    };
    const auto& field = dynamic_cast<ui::TextBox&>(*form.Find("Text1(19)"));
    const auto& goods = dynamic_cast<ui::Grid&>(*form.Find("dbgVenta"));
    if (goods.rows.size() != kLines) throw std::runtime_error("the ticket has not its lines");
    rows.push_back(Compare({"key to painted field, ticket of 200 lines", 0, 0, 16000}, 500,
                           {back, [] { TypeAndPaint("8"); }},
                           {[&] { empty.Raise(); }, [] { TypeAndPaint("8"); }}));
    if (field.text != "8") throw std::runtime_error("the field has not its key");
    const auto twenty = [](const auto& scan) {
      return [scan] {
        for (int i = 0; i < 20; ++i) scan();
      };
    };
    const auto scan = [&] { unseen.Scan(kCode); };
    unseen.StartSale();
    for (std::size_t line = 0; line < kLines; ++line) scan();
    rows.push_back(Compare({"20 codes scanned to 20 stored and painted lines, beside a till without a window", 2.5},
                           40, {back, twenty([] { Scan(); })}, {{}, twenty(scan)}));
  });
  return rows;
}

ui::SearchRequest AllArticles(int articles) {
  ui::SearchRequest request;
  request.captions = {"Codigo", "Articulo", "Precio", "Existencias"};
  request.shown_columns = {0, 1, 2, 3};
  request.masks = {"", "", "#,##0.00", "#,##0.00"};
  request.search_column = 1;
  for (int article = 1; article <= articles; ++article) {
    request.rows.push_back({Variant(demo::CodeOf(article)), Variant(demo::NameOf(article)),
                            Variant(article / 100.0), Variant(article % 50)});
  }
  return request;
}

// A word typed key by key into a dialog just opened: its first key looks through
// all rows, the others through what is left.
std::vector<Row> MeasureSearch() {
  ui::SearchRequest request = AllArticles(100000);
  const std::string word = "leche ref. 12";
  ui::Engine engine;
  qt::WindowMemory memory;
  std::unique_ptr<qt::SearchDialog> dialog;
  std::size_t at = word.size();
  const auto open = [&] {
    dialog = std::make_unique<qt::SearchDialog>(request, engine, memory, nullptr);
    dialog->show();
    dialog->activateWindow();
    Paint();
    at = 0;
  };
  const Work key{[&] {
                   if (at >= word.size()) open();
                 },
                 [&] { TypeAndPaint(word.substr(at++, 1).c_str()); }};
  return {Measure({"search dialog over 100,000 articles: opened and painted"}, 20, {{}, open}),
          Measure({"a key in it", 0, 0, 50000}, 20 * static_cast<int>(word.size()), key)};
}

long ResidentKilobytes() {
  long pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return pages * ::sysconf(_SC_PAGESIZE) / 1024;
}

// Sales of five lines with all their windows, as a day has 500 of them.
void MeasureDay(const std::string& path) {
  constexpr int kEarly = 50;
  constexpr int kDay = 500;
  WindowTill till(path);
  long early = 0;
  till.Sell([&] {
    EnterAgent(till);
    for (int sale = 1; sale <= kDay; ++sale) {
      Press(ui::Key::Add);
      for (int line = 0; line < 5; ++line) Scan();
      Press(ui::Key::Subtract);
      if (till.TicketsPrinted() != 1) throw std::runtime_error("no ticket was printed");
      till.ForgetPaper();
      if (sale == kEarly) early = ResidentKilobytes();
    }
  });
  const long late = ResidentKilobytes();
  std::printf("\nMemory after %d sales %ld KiB, after %d sales %ld KiB: %.2f KiB a sale.\n", kEarly,
              early, kDay, late, static_cast<double>(late - early) / (kDay - kEarly));
}

// This program started again for one thing alone.
class Again {
 public:
  Again(const char* program, const std::string& store) : program_(program), store_(store) {}
  void operator()(const std::string& what) const {
    const std::string command = program_ + " " + what + " '" + store_ + "'";
    if (std::system(command.c_str()) != 0) throw std::runtime_error(command);
  }

 private:
  std::string program_;
  std::string store_;
};

void MeasureLists(const char* program, const std::string& folder) {
  const std::string path = folder + "/listas.db";
  if (!std::filesystem::exists(path)) MakeStoreOfLongLists(path);
  std::printf("\nThe longest lists; at most 200 ms and 150 MB, which only sorting a million rows exceeds while it lasts:\n\n"
              "| list | rows | first rows painted, ms | read whole, ms | MB before | MB after | MB at most |\n"
              "|---|---|---|---|---|---|---|\n");
  std::fflush(stdout);
  const Again again(program, path);
  for (const std::string_view list : kLongLists) again(list.data());
}

int Main(int count, char** words) {
  unsetenv("DISPLAY");
  unsetenv("WAYLAND_DISPLAY");
  const std::string what = count == 3 ? words[1] : "";
  // A start ends with the painted window; taking it down is not part of it.
  const auto painted = [] { std::_Exit(0); };
  if (what == "--empty") {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const QApplication any(count, words);
    const EmptyWindow window;
    painted();
  }
  const Application application;
  if (what == "--sale") return WindowTill(words[2]).Sell(painted), 1;
  if (what == "--day") return MeasureDay(words[2]), 0;
  if (std::ranges::find(kLongLists, what) != std::end(kLongLists)) return ShowLongList(what, words[2]), 0;
  if (what == "--lists") return MeasureLists(words[0], words[2]), 0;
  const TemporaryFolder folder;
  // Measuring keys leaves a sale unfinished, which the next start would offer.
  const std::string path = folder / "teclas.db";
  const std::string fresh = folder / "tienda.db";
  for (const std::string& store : {path, fresh}) MakeStore(store, Contents::Demonstration, StepClock());
  const Again again(words[0], fresh);
  std::vector<Row> rows = MeasureKeys(path);
  for (Row& row : MeasureSearch()) rows.push_back(std::move(row));
  rows.push_back(Compare({"cold start to the painted sale screen", 1.2}, 60,
                         {{}, [&] { again("--sale"); }}, {{}, [&] { again("--empty"); }}));
  std::printf("The windows, without a screen, beside an empty one:\n\n");
  Print(rows);
  again("--day");
  MeasureLists(words[0], folder.path());
  return 0;
}

}  // namespace
}  // namespace tpv::bench

int main(int count, char** words) { return tpv::bench::Guarded(count, words, tpv::bench::Main); }
