#include "bench/office.h"

#include <stdexcept>

#include "cash/closures_journal.h"
#include "debt/pending_screen.h"
#include "invoicing/period_screen.h"
#include "reports/sales_journal_screen.h"
#include "sale/sale_screen.h"

namespace tpv::bench {

Office::Office(const std::string& path, const Clock& clock)
    : connection_(path, clock), shop_(connection_, clock) {
  shop_.front_end.SetDriver(*this);
  shop_.reports.keeps = false;  // a month's invoice is thousands of pages
}

void Office::SaleScreen() {
  FrmTpv screen(context_);
  engine().Open(screen);
  engine().Unload(screen);
}

void Office::Pending() {
  FrmTpvPendiente screen(context_, [](std::int32_t) {});
  engine().Open(screen);
  List(screen);
  engine().Unload(screen);
}

void Office::Journal(const std::string& from, const std::string& to) {
  FrmTpvDiarioVentas screen(context_);
  Search(screen, screen.Text1[5], from, screen.Text1[2], to);
  engine().Unload(screen);
}

void Office::Closures(const std::string& from, const std::string& to) {
  FrmTpvDiarioCierres screen(context_);
  Search(screen, screen.Text1[9], from, screen.Text1[5], to);
  engine().Unload(screen);
}

void Office::OpenPanel(const std::string& from, const std::string& to) {
  panel_ = std::make_unique<FrmPanel>(context_);
  engine().Open(*panel_);
  engine().SelectEntry(dynamic_cast<ui::ComboBox&>(*panel_->Find("cboPeriodo")), "Entre dos fechas");
  panel_->Text1[5].text = from;
  panel_->Text1[2].text = to;
}

void Office::ShowPanel() {
  engine().Click(*panel_->Find("cmdVer"));
  if (panel_->Text1[20].text == "0,00 €") throw std::runtime_error("frmPanel shows nothing");
}

void Office::ClosePanel() {
  engine().Unload(*panel_);
  panel_.reset();
}

void Office::Invoicing(const std::string& from, const std::string& to, bool make_invoice) {
  FrmTpvFacturas screen(context_);
  Search(screen, screen.Text1[5], from, screen.Text1[2], to);
  if (make_invoice) engine().Click(*screen.Find("cmdFacturar"));
  engine().Unload(screen);
}

void Office::Search(ui::Form& screen, ui::TextBox& from_box, const std::string& from,
                    ui::TextBox& to_box, const std::string& to) {
  engine().Open(screen);
  from_box.text = from;
  to_box.text = to;
  List(screen);
}

void Office::List(ui::Form& screen) {
  engine().Click(*screen.Find("cmdInforme"));
  const auto* grid = dynamic_cast<ui::Grid*>(screen.Find("DbgDiario"));
  if (grid->rows.empty()) throw std::runtime_error(screen.name + " lists nothing");
}

bool Office::Step() {
  engine().Click(*engine().Top()->Find("cmdFacturar"));
  return true;
}

void Office::OnBox(const ui::MessageBox& box) { throw std::runtime_error(box.text); }

}  // namespace tpv::bench
