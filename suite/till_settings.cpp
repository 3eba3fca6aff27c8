#include "suite/till_settings.h"

#include "base/number_text.h"
#include "base/text.h"
#include "platform/objects.h"
#include "platform/settings.h"

namespace tpv::suite {

namespace {

constexpr std::string_view kApplication = "TPV";

bool IsWithin(std::string_view value, std::int32_t least, std::int32_t most) {
  const auto number = ParseInt32(value);
  return number && *number >= least && *number <= most;
}

bool IsAnything(std::string_view) { return true; }

struct Replacement {
  std::string_view parameter;  // its two spellings are one field
  std::string_view key;
  bool (*fits)(std::string_view value);
  bool is_number;
};

constexpr Replacement kReplacements[] = {
    {"Par_NumCaja", kTillNumber, IsTillNumber, true},
    {"Par_PCajon", kDrawerMethod, IsDrawerMethod, true},
    {"Par_SCajon", kDrawerCodes, IsAnything, false},
};

}  // namespace

bool IsTillNumber(std::string_view value) { return IsWithin(value, 1, 32767); }
bool IsDrawerMethod(std::string_view value) { return IsWithin(value, 0, 4); }

std::optional<Variant> TillParameter(const Settings& settings, std::string_view parameter) {
  for (const Replacement& replacement : kReplacements) {
    if (!EqualNoCase(parameter, replacement.parameter)) continue;
    const std::string value = settings.Read(kApplication, kTill, replacement.key);
    if (value.empty()) return std::nullopt;
    if (!replacement.fits(value)) {
      throw ObjectError("El ajuste " + std::string(kTill) + "." + std::string(replacement.key) +
                        " no es válido: " + value);
    }
    return replacement.is_number ? Variant(Int32OrZero(value)) : Variant(value);
  }
  return std::nullopt;
}

}  // namespace tpv::suite
