// Finding customers and agents by code or by name, as every screen does it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/variant.h"

namespace tpv {

struct Context;
class FormToolkit;
class Recordset;

namespace ui {
struct TextBox;
}

// Whom a search by name offers: those in use, for what begins; everybody, for what was sold.
enum class Offered { InUse, Everybody };

// The row of a customer look-up, kept whole: fields by name regardless of case.
class CustomerRecord {
 public:
  explicit CustomerRecord(const Recordset& row);
  // Throws std::out_of_range for a field that the look-up does not read.
  const Variant& operator[](std::string_view field) const;

  std::int32_t Id() const { return (*this)["Cli_ID"].IntOr(0); }
  std::int32_t Code() const { return (*this)["Cli_COD"].IntOr(0); }
  std::string Name() const { return (*this)["Cli_Nom"].TextOr(""); }

 private:
  std::vector<std::string> names_;
  std::vector<Variant> values_;
};

// With code -1 and id 0 the operator searches by name first, and `id` receives
// the choice (0 for none). Nullopt when nothing was chosen or found.
std::optional<CustomerRecord> FindCustomer(Context& context, FormToolkit& toolkit,
                                           std::int32_t code, std::int32_t& id,
                                           Offered offered = Offered::Everybody);

// The whole row of the customer with this code.
std::optional<CustomerRecord> CustomerByCode(Context& context, std::int32_t code);

// Shows the agent in the two fields and makes it the context's IdAgente; an
// unknown id empties the fields and sets 0. With id 0 the operator searches by
// name first, and closing the search leaves the agent as it was. Returns whether
// an agent is shown.
bool LookUpAgent(Context& context, FormToolkit& toolkit, std::int32_t id, ui::TextBox& code,
                 ui::TextBox& name, Offered offered = Offered::InUse);

}  // namespace tpv
