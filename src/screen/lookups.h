// Finding customers and agents by code or by name, as every screen does it.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/variant.h"

namespace tpv {

struct Context;
class FormToolkit;

// The row of a customer look-up, kept whole: fields by name regardless of case.
class CustomerRecord {
 public:
  void Set(std::string_view field, Variant value);
  // Throws std::out_of_range for a field that the look-up does not read.
  const Variant& operator[](std::string_view field) const;

  std::int32_t Id() const { return (*this)["Cli_ID"].IntOr(0); }
  std::int32_t Code() const { return (*this)["Cli_COD"].IntOr(0); }
  std::string Name() const { return (*this)["Cli_Nom"].TextOr(""); }

 private:
  std::map<std::string, Variant> fields_;
};

// With code -1 and id 0 the operator searches by name first, and `id` receives
// the choice (0 for none). Nullopt when nothing was chosen or found.
std::optional<CustomerRecord> FindCustomer(Context& context, FormToolkit& toolkit,
                                           std::int32_t code, std::int32_t& id);

struct Agent {
  std::int32_t id = 0;
  std::string name;
};

// With id 0 the operator searches by name first. Sets the context's IdAgente to
// the agent found, or to 0 with nullopt.
std::optional<Agent> FindAgent(Context& context, FormToolkit& toolkit, std::int32_t id);

}  // namespace tpv
