#include "reports/supplier_search.h"

#include "context/context.h"

namespace tpv {

void SearchSupplier(Context& context) {
  const auto toolkit = context.MyBd->CreateFormToolkit();
  toolkit->SetConexion(context.Database());
  NameSearch search;
  search.statement = "Select Pro_Id,Pro_Cod,Pro_Nom FROM Pro";
  search.search_column = "Pro_Nom";
  search.first_caption = "Codigo";
  search.second_caption = "Nombre del Proveedor";
  search.title = "Buscar Proveedores por nombre";
  search.first_width = 900;
  toolkit->BuscarPorNombre(search);
}

}  // namespace tpv
