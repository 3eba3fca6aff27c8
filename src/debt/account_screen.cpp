#include "debt/account_screen.h"

#include "base/mask.h"
#include "data/archived.h"
#include "platform/clock.h"
#include "platform/report.h"

namespace tpv {

namespace {

constexpr const char* kAmountMask = "#,##0.00";

// A date field's day; nullopt when it is empty.
std::optional<DateTime> DayOf(const ui::TextBox& box) {
  if (box.text.empty()) return std::nullopt;
  return StartOfDay(Variant(box.text).ToDate());
}

std::string Euros(double euros) { return euros == 0 ? "" : FormatNumber(euros, kAmountMask); }

std::vector<std::string> CellsOf(const AccountEntry& entry) {
  return {FormatDate(entry.when, "DD/MM/YYYY HH:MM"), entry.what, Euros(entry.sold),
          Euros(entry.paid), FormatNumber(entry.balance, kAmountMask)};
}

}  // namespace

FrmTpvCuenta::FrmTpvCuenta(Context& ctx, std::int32_t customer_id, const std::string& code,
                           const std::string& customer)
    : Screen(ctx, "frmTpvCuenta"), customer_id_(customer_id) {
  caption = "Cuenta de un cliente";
  Text1.Add(9, "Cliente").text = code;
  Text1.Add(4).text = customer;
  MakeDateField(Text1.Add(5, "Desde Fecha"));
  MakeDateField(Text1.Add(2, "Hasta Fecha"));
  for (const auto& [index, columns] : {std::pair(9, 8), {4, 40}, {5, 12}, {2, 12}}) {
    Text1[index].columns = columns;
    Text1[index].locked = columns != 12;
    Text1[index].tab_stop = columns == 12;
  }
  Text1[4].stretch = ListView1.stretch = true;
  using enum ui::Align;
  ListView1.layout = {{"Fecha", "DD/MM/YYYY HH:MM", 1500, Left, false, false},
                      {"Concepto", "", 4500, Left, false, false},
                      {"Ventas", kAmountMask, 1200, Right, false, false, true},
                      {"Cobros", kAmountMask, 1200, Right, false, false, true},
                      {"Saldo", kAmountMask, 1200, Right, false, false}};
  Frame2.caption = "Ventas y cobros de " + code + " " + customer;
  lblTotales.large = true;
  cmdInforme.emphasis = ui::Emphasis::Strong;
  Frame1.Rows({{&Text1[9], &Text1[4]}, {&Text1[5], &Text1[2], &cmdInforme, &cmdPdf, &cmdSalir}});
  Frame2.Rows({{&ListView1}});
  rows = {{&Frame1}, {&Frame2}, {&lblTotales}, {&lblInforme}};
  cmdInforme.click = [this] { Run(); };
  cmdPdf.click = [this] { MakeReport(); };
  cmdSalir.click = [this] { Close(); };
}

void FrmTpvCuenta::OnLoad() {
  Screen::OnLoad();
  Run();
}

void FrmTpvCuenta::Run() {
  if (!CheckDates({&Text1[5], &Text1[2]})) return;
  account_ = ReadAccount(context(), customer_id_, DayOf(Text1[5]), DayOf(Text1[2]));
  ShowEntries();
  lblInforme.caption = ArchivedSince(Database(), DayOf(Text1[5]), context().ports.clock.Now());
}

void FrmTpvCuenta::ShowEntries() {
  ListView1.items.clear();
  lblInforme.caption.clear();
  if (account_.before != 0) {
    ListView1.items.push_back(
        {{"", "Saldo anterior", "", "", FormatNumber(account_.before, kAmountMask)}, false, 0});
  }
  for (const AccountEntry& entry : account_.entries)
    ListView1.items.push_back({CellsOf(entry), false, 0});
  lblTotales.caption = "Saldo: " + FormatNumber(account_.Balance(), "#,###,##0.00€");
}

void FrmTpvCuenta::MakeReport() {
  Report report;
  report.title = "EXTRACTO DE CUENTA";
  report.left = {Parameter("Par_Nombre").TextOr(""), "CIF/NIF " + Parameter("Par_Doc").TextOr("")};
  report.right = {Text1[9].text + " " + Text1[4].text};
  if (!Text1[5].text.empty()) report.right.push_back("Desde " + Text1[5].text);
  if (!Text1[2].text.empty()) report.right.push_back("Hasta " + Text1[2].text);
  ReportTable table;
  table.columns = {{"FECHA", 2.2},
                   {"CONCEPTO", 4},
                   {"VENTAS", 1.5, true},
                   {"COBROS", 1.5, true},
                   {"SALDO", 1.5, true}};
  for (const ui::ListItem& item : ListView1.items) table.rows.push_back({item.cells});
  table.rows.push_back(
      {{"", "Saldo", "", "", FormatNumber(account_.Balance(), kAmountMask)}, true});
  report.tables = {table};
  lblInforme.caption =
      "Extracto guardado en " + context().ports.reports.Show(report, "extracto-" + Text1[9].text);
}

}  // namespace tpv
