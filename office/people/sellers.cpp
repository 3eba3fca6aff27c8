#include "office/people/sellers.h"

#include "data/retired.h"
#include "platform/database.h"

namespace tpv::office {

namespace {

constexpr FormField kFields[] = {
    {.column = "Age_NOM", .caption = "Nombre", .asks = Asks::Text, .width = 50,
     .help = "Sale en sus tickets y en los diarios. En la venta se teclea su número.", .required = true,
     .unique = true},
};

constexpr RecordTable kSeller{"Age", "Age_ID", "Vendedor", kFields};

class SellerForm : public RecordForm {
 public:
  SellerForm(Context& context, std::int32_t id) : RecordForm(context, "frmVendedor", kSeller, id) {}

 protected:
  std::vector<std::pair<std::string, std::int32_t>> Own() const override {
    constexpr std::int32_t kGeneral = 1;
    if (!IsNew()) return {};
    return {{"Age_Reg", kGeneral}};
  }
};

}  // namespace

SellerList::SellerList(Context& context)
    : RecordList(context, {"frmVendedores", "Vendedores", {{"Número", 1000}, {"Nombre", 5000}}, "Age"}) {}

std::string SellerList::Statement() const { return "SELECT Age_ID, Age_ID, Age_NOM FROM Age ORDER BY Age_ID"; }

std::unique_ptr<RecordForm> SellerList::FormOf(std::int32_t id) { return std::make_unique<SellerForm>(context(), id); }

std::string SellerList::Kept(std::int32_t) {
  const auto working = Database().Execute("SELECT COUNT(*) FROM Age WHERE " + NotRetired("Age", "Age_ID"));
  return working->Field(0).ToInt32() > 1 ? "" : "Es el único vendedor: dé de alta otro antes de retirarlo";
}

}  // namespace tpv::office
