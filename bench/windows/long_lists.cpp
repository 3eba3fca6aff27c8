#include "bench/windows/long_lists.h"

#include <QHeaderView>
#include <QTableView>
#include <chrono>
#include <cstdio>
#include <fstream>

#include "adapters/qt/search_dialog.h"
#include "bench/windows/window_till.h"
#include "host/demo/demonstration.h"
#include "host/store.h"
#include "suite/article_search.h"

namespace tpv::bench {

namespace {

using Moment = std::chrono::steady_clock;

constexpr int kDays = 100;
constexpr int kMonth = 30;
constexpr int kOpen = 50000;
constexpr int kByDescription = 1;  // a column of the search

double Milliseconds(Moment::time_point from, Moment::time_point to) {
  return std::chrono::duration<double, std::milli>(to - from).count();
}

// "VmHWM": the most that was ever resident.
double Megabytes(const std::string& which) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double kilobytes = 0;
    if (word == which + ":" && status >> kilobytes) return kilobytes / 1024;
  }
  return 0;
}

// Waits for the first table that paints rows.
class FirstRows : public QObject {
 public:
  FirstRows() { qApp->installEventFilter(this); }
  Moment::time_point painted() const { return painted_; }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Paint) return false;
    const auto* table = qobject_cast<QTableView*>(watched->parent());
    if (table == nullptr || table->model() == nullptr || table->model()->rowCount() == 0) return false;
    qApp->removeEventFilter(this);
    QCoreApplication::sendEvent(watched, event);
    painted_ = Moment::now();
    return true;
  }

 private:
  Moment::time_point painted_;
};

struct Course {
  Moment::time_point begun = Moment::now();
  Moment::time_point painted;
  Moment::time_point done;
  int rows = 0;
};

Course ShowGrid(WindowTill& till, void (Zrtpve::*screen)(), const DateTime& today) {
  Course course;
  till.Open(screen, [&] {
    ui::Form& form = till.form();
    if (auto* from = dynamic_cast<ui::TextBox*>(form.Find("Text1(5)")); screen == &Zrtpve::zDiario) {
      from->text = ToDayFirst(AddDays(today, -kMonth));
      dynamic_cast<ui::TextBox&>(*form.Find("Text1(2)")).text = ToDayFirst(AddDays(today, -1));
    }
    const FirstRows first;
    course.begun = Moment::now();
    till.Click("cmdInforme");
    Paint();
    course.done = Moment::now();
    course.painted = first.painted();
    course.rows = dynamic_cast<ui::Grid&>(*form.Find("DbgDiario")).RowCount();
  });
  return course;
}

Course Search(WindowTill& till, bool sorted) {
  Course course;
  const FirstRows first;
  ui::SearchRequest request;
  request.captions = {"Codigo", "Articulo", "Codigo de barras", "Precio", "Existencias"};
  request.shown_columns = {1, 2, 3, 4, 5};
  request.masks = {"", "", "", "#,##0.00", "#,##0"};
  suite::ArticleReader reader(till.database());
  if (reader.ReadOn(request.rows)) request.read_on = [&] { return reader.ReadOn(request.rows); };
  ui::Engine engine;
  qt::WindowMemory memory;
  qt::SearchDialog dialog(request, engine, memory, nullptr);
  dialog.show();
  dialog.activateWindow();
  Paint();
  course.painted = first.painted();
  while (!dialog.list().HasAll()) QCoreApplication::processEvents();
  if (sorted) emit dialog.findChild<QTableView*>()->horizontalHeader()->sectionClicked(kByDescription);
  course.done = Moment::now();
  course.rows = static_cast<int>(dialog.list().Visible().size());
  return course;
}

}  // namespace

void MakeStoreOfLongLists(const std::string& path) {
  const StepClock clock;
  MakeLargeStore(path, {kDays * 1000, kDays, 1000000, 1}, clock);
  SqliteConnection connection(path, clock);
  connection.Execute("UPDATE Cav SET Cav_Cobrado = 0 WHERE Cav_Id <= " + std::to_string(kOpen));
}

void ShowLongList(const std::string& list, const std::string& path) {
  const StepClock clock;
  WindowTill till(path);
  const double before = Megabytes("VmRSS");
  const Course course = list == "--search"    ? Search(till, false)
                        : list == "--sorted"  ? Search(till, true)
                        : list == "--journal" ? ShowGrid(till, &Zrtpve::zDiario, clock.Now())
                                              : ShowGrid(till, &Zrtpve::zInfPendienteCobro, clock.Now());
  std::printf("| %s | %d | %.0f | %.0f | %.0f | %.0f | %.0f |\n", list.c_str() + 2, course.rows,
              Milliseconds(course.begun, course.painted), Milliseconds(course.begun, course.done), before,
              Megabytes("VmRSS"), Megabytes("VmHWM"));
  std::fflush(stdout);
}

}  // namespace tpv::bench
