#include "suite/customer_card.h"

#include "platform/ui/front_end.h"
#include "suite/customer_form.h"

namespace tpv::suite {

CustomerCard::CustomerCard(Ports& ports) : LateBound("ZRCLIENTES.ZRCLI"), ports_(ports) {
  Properties(Kind::Object, {"MyBd"});
  Properties(Kind::Whole, {"IdCliente"});
  Define("zShowNuevoCliente", 0, 0, [this](auto) { return ShowNew(); });
}

Variant CustomerCard::ShowNew() {
  const auto given = Get("MyBd");
  auto database = given.IsNull() ? nullptr
                                 : std::dynamic_pointer_cast<DatabaseObject>(given.ToObject());
  if (!database) throw ObjectError("ZRCLIENTES.ZRCLI: falta MyBd");
  Context context{0, 0, 0, 0, database, ports_};
  CustomerForm form(context);
  ports_.ui.ShowModal(form);
  Set("IdCliente", Variant(form.StoredId()));
  return Variant(form.Stored());
}

}  // namespace tpv::suite
