#include "screen/manual_pages.h"

#include <algorithm>
#include <iterator>

namespace tpv {

namespace {

struct Page {
  std::string_view form;
  std::string_view page;
};

constexpr Page kPages[] = {
    {"frmTpv", "venta"},
    {"frmVentasAparcadas", "venta"},
    {"frmSinImprimir", "sin-imprimir"},
    {"frmTpv1", "cobro"},
    {"frmTpvDevoluciones", "devoluciones"},
    {"frmTpvMovCaja", "movimientos"},
    {"frmFactuTicket", "ticket-de-cierre"},
    {"frmArqueo", "cierre"},
    {"frmTpvFacturas", "facturacion"},
    {"frmTpvPendiente", "pendiente"},
    {"frmTpvCuenta", "pendiente"},
    {"frmNuevoCliente", "busquedas"},
    {"frmOficina", "oficina"},
    {"frmArticulos", "oficina-articulos"},
    {"frmArticulo", "oficina-articulos"},
    {"frmPrecios", "oficina-articulos"},
    {"frmEtiquetas", "oficina-articulos"},
    {"frmTeclas", "oficina-articulos"},
    {"frmTecla", "oficina-articulos"},
    {"frmParametros", "oficina-parametros"},
    {"frmClientes", "oficina-clientes"},
    {"frmCliente", "oficina-clientes"},
    {"frmPreciosCliente", "oficina-clientes"},
    {"frmPrecioCliente", "oficina-clientes"},
    {"frmFormasPago", "oficina-clientes"},
    {"frmFormaPago", "oficina-clientes"},
    {"frmTiposIva", "oficina-clientes"},
    {"frmTipoIva", "oficina-clientes"},
    {"frmVendedores", "oficina-clientes"},
    {"frmVendedor", "oficina-clientes"},
    {"frmAlmacenes", "oficina"},
    {"frmAlmacen", "oficina"},
    {"frmRegistros", "registros"},
    {"frmSubsanar", "registros"},
    {"frmPanel", "panel"},
    {"frmAjustes", "ajustes"},
    {"frmImportar", "tienda-propia"},
    {"frmExportar", "tienda-propia"},
    {"frmCrearTienda", "tienda-propia"},
    {"frmBienvenida", "tienda-propia"},
    {"frmAbrirAlmacen", "tienda-propia"},
    {"frmTiendaCerrada", "tienda-propia"},
};

}  // namespace

std::string_view ManualPageOf(std::string_view form_name) {
  const auto* found = std::find_if(std::begin(kPages), std::end(kPages),
                                   [&](const Page& page) { return page.form == form_name; });
  return found == std::end(kPages) ? std::string_view() : found->page;
}

}  // namespace tpv
