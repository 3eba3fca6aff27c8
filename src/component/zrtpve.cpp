#include "component/zrtpve.h"

#include "cash/closing_screen.h"
#include "cash/closures_journal.h"
#include "cash/movements_screen.h"
#include "debt/customer_debt.h"
#include "debt/pending_screen.h"
#include "invoicing/period_screen.h"
#include "output/cash_drawer.h"
#include "output/sales_ticket.h"
#include "platform/objects.h"
#include "platform/ui/front_end.h"
#include "reports/sales_journal_screen.h"
#include "reports/supplier_search.h"
#include "sale/sale_screen.h"
#include "sale/sale_storage.h"

namespace tpv {

Zrtpve::Zrtpve(Ports& ports) : context_{0, 0, 0, 0, nullptr, ports} {}

void Zrtpve::RequireDatabase() const {
  if (!context_.MyBd) throw ObjectError("ZRTPVE: falta MyBd");
}

template <typename Screen, typename... Handed>
void Zrtpve::ShowScreen(Handed... handed) {
  RequireDatabase();
  Screen screen(context_, std::move(handed)...);
  context_.ports.ui.ShowModal(screen);
}

void Zrtpve::zTpv() { ShowScreen<FrmTpv>(); }
void Zrtpve::zDiario() { ShowScreen<FrmTpvDiarioVentas>(); }
void Zrtpve::zAperturaCierre() { ShowScreen<FrmTpvCierreCaja>(); }
void Zrtpve::zMovCaja() { ShowScreen<FrmTpvMovCaja>(); }
void Zrtpve::zFacturacion() { ShowScreen<FrmTpvFacturas>(); }
void Zrtpve::zDiarioCaja() { ShowScreen<FrmTpvDiarioCierres>(); }
void Zrtpve::zInfPendienteCobro() { ShowScreen<FrmTpvPendiente>(SaleViewer(context_)); }

void Zrtpve::zFindByName() {
  RequireDatabase();
  SearchSupplier(context_);
}

void Zrtpve::msCancelaVenta(std::int32_t& IdVenta) {
  RequireDatabase();
  CancelSale(context_, IdVenta);
}

void Zrtpve::Abre_Cajon() {
  RequireDatabase();
  OpenDrawer(context_);
}

void Zrtpve::Emite_Ticket() {
  RequireDatabase();
  PrintSalesTicket(context_);
}

double Zrtpve::fnPendienteCliente(std::int32_t& nCliente) {
  RequireDatabase();
  return CustomerDebt(context_, nCliente);
}

}  // namespace tpv
