#include "panel/panel_screen.h"

#include "data/archived.h"
#include "panel/figures.h"
#include "panel/panel_report.h"
#include "platform/clock.h"
#include "platform/report.h"

namespace tpv {

using panel::Days;
using panel::Periods;
using panel::Picture;

namespace {

constexpr int kFirst = 5;
constexpr int kLast = 2;
constexpr int kFigures = 20;
constexpr int kFiguresBefore = 30;
constexpr int kByDates = 5;  // the entry behind those of panel::Span
constexpr int kOldest = 1900;

std::size_t IndexOf(Picture picture) { return static_cast<std::size_t>(picture); }

}  // namespace

FrmPanel::FrmPanel(Context& ctx) : Screen(ctx, "frmPanel") {
  caption = "Panel: cómo va la tienda";
  maximised = true;
  DeclareFields();
  DeclareLayout();
  cboPeriodo.changed = [this] { ChoosePeriod(); };
  cmdVer.click = [this] { Run(); };
  cmdPdf.click = [this] { MakeReport(); };
  cmdSalir.click = [this] { Close(); };
  for (ui::OptionButton* page : {&optVentas, &optDetalle, &optPendiente}) {
    page->click = [this] { ShowPage(); };
  }
}

void FrmPanel::DeclareFields() {
  // In the order of panel::Span.
  cboPeriodo.Offer(ui::Entries({"Hoy", "Ayer", "Esta semana", "Este mes", "Este año", "Entre dos fechas"}));
  MakeDateField(Text1.Add(kFirst, "Desde Fecha"));
  MakeDateField(Text1.Add(kLast, "Hasta Fecha"));
  for (const int index : {kFirst, kLast}) Text1[index].columns = 12;
  for (int figure = 0; figure < static_cast<int>(panel::kFigures); ++figure) {
    for (const int index : {kFigures + figure, kFiguresBefore + figure}) {
      ui::TextBox& box = Text1.Add(index);
      box.locked = box.stretch = true;
      box.tab_stop = false;
      box.align = ui::Align::Right;
      box.columns = 14;
    }
  }
  cmdVer.emphasis = ui::Emphasis::Strong;
}

void FrmPanel::DeclareLayout() {
  Frame1.Rows({{&cboPeriodo, &Text1[kFirst], &Text1[kLast], &cmdVer, &cmdPdf, &cmdSalir}});
  std::vector<ui::Control*> now;
  std::vector<ui::Control*> before;
  for (int figure = 0; figure < static_cast<int>(panel::kFigures); ++figure) {
    now.push_back(&Text1[kFigures + figure]);
    before.push_back(&Text1[kFiguresBefore + figure]);
  }
  Frame2.Rows({now, before});
  const auto chart = [this](Picture picture) -> ui::Control* { return &charts_[IndexOf(picture)]; };
  using enum Picture;
  rows = {{&Frame1},
          {&Frame2},
          {&optVentas, &optDetalle, &optPendiente, &lblInforme},
          {chart(Days)},
          {chart(Hours), chart(Means)},
          {chart(Sellers), chart(Tills)},
          {chart(Articles), chart(Rates)},
          {chart(Pending), chart(Shortages)}};
  lblInforme.stretch = true;
}

void FrmPanel::OnLoad() {
  Screen::OnLoad();
  optVentas.Check();
  cboPeriodo.index = 0;
  ChoosePeriod();
}

bool FrmPanel::IsAskedByDates() const { return cboPeriodo.index == kByDates; }

// Named periods are shown at once, two dates when both are there.
void FrmPanel::ChoosePeriod() {
  Text1[kFirst].enabled = Text1[kLast].enabled = IsAskedByDates();
  if (IsAskedByDates()) return SetFocus(Text1[kFirst]);
  const Days days = panel::PeriodsOf(static_cast<panel::Span>(cboPeriodo.index), context().ports.clock.Now()).now;
  Text1[kFirst].text = ToDayFirst(days.first);
  Text1[kLast].text = ToDayFirst(days.last);
  Run();
}

std::optional<Periods> FrmPanel::Asked() {
  const DateTime now = context().ports.clock.Now();
  if (!IsAskedByDates()) return panel::PeriodsOf(static_cast<panel::Span>(cboPeriodo.index), now);
  const auto refuse = [this](const char* why, int field) {
    Refuse(why, &Text1[field], ui::Icon::Exclamation);
    return std::nullopt;
  };
  for (const int field : {kFirst, kLast}) {
    if (!RequireDate(Text1[field], "La fecha indicada no es valida")) return std::nullopt;
    if (StartOfDay(Variant(Text1[field].text).ToDate()) > now) return refuse("La fecha es posterior a hoy", field);
  }
  const Days days{StartOfDay(Variant(Text1[kFirst].text).ToDate()), StartOfDay(Variant(Text1[kLast].text).ToDate())};
  if (days.last < days.first) return refuse("La fecha final es anterior a la inicial", kLast);
  const Periods periods = panel::PeriodsOf(days);
  if (periods.before.first.year < kOldest) return refuse("El periodo es demasiado largo", kFirst);
  return periods;
}

// What cannot be read, or is given up, leaves what is shown.
void FrmPanel::Run() {
  const auto periods = Asked();
  if (!periods) return;
  const bool finished = Finishes(caption, [&](ui::LongWork& work) {
    work.Stage("Sumando las ventas");
    board_ = panel::ReadBoard(context(), *periods, LineTaxBy(toolkit()));
  });
  if (!finished) return;
  ShowBoard();
  lblInforme.caption = ArchivedSince(Database(), periods->before.first, context().ports.clock.Now());
}

void FrmPanel::ShowBoard() {
  lblInforme.caption.clear();
  Frame2.caption = board_->periods.now.Text() + ", y debajo " + board_->periods.before.Text();
  const auto figures = panel::Figures(*board_);
  for (std::size_t i = 0; i < figures.size(); ++i) {
    ui::TextBox& now = Text1[kFigures + static_cast<int>(i)];
    now.caption = figures[i].caption;
    now.text = figures[i].now;
    ui::TextBox& before = Text1[kFiguresBefore + static_cast<int>(i)];
    before.caption = figures[i].caption_before;
    before.text = figures[i].before;
  }
  auto pictures = panel::Pictures(*board_);
  for (std::size_t i = 0; i < pictures.size(); ++i) charts_[i].data = std::move(pictures[i]);
  ShowPage();
}

// One day has no course of days.
void FrmPanel::ShowPage() {
  using enum Picture;
  const auto show = [this](bool visible, std::initializer_list<Picture> pictures) {
    for (const Picture picture : pictures) charts_[IndexOf(picture)].visible = visible;
  };
  show(optVentas.checked, {Days, Hours, Means});
  show(optDetalle.checked, {Sellers, Tills, Articles, Rates});
  show(optPendiente.checked, {Pending, Shortages});
  if (board_ && board_->periods.now.Count() == 1) show(false, {Days});
}

void FrmPanel::MakeReport() {
  if (!board_) return Run();
  const Report report = panel::BoardReport(*board_, Parameter("Par_Nombre").TextOr(""));
  lblInforme.caption = "Panel guardado en " + context().ports.reports.Show(report, "panel");
}

}  // namespace tpv
