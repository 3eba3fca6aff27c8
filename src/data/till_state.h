// Whether a till may work: it is open while its newest journal entry is not a
// closure; a till without entries is closed.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/database.h"

namespace tpv {

// The till that a field's text names: 1 to 32767.
std::optional<std::int16_t> TillNumber(std::string_view till_field);

// `till_field` is the till field's text; what names no till counts as closed,
// without asking the store.
bool TillIsOpen(Connection& connection, std::string_view till_field);

// A till's journal does not take the entry. what() is for the operator, whole.
class TillRefusal : public DatabaseError {
 public:
  enum class About { Till, Date };

  explicit TillRefusal(const std::string& text, About about = About::Till)
      : DatabaseError(text), about_(about) {}
  About about() const { return about_; }

 private:
  About about_;
};

inline constexpr const char* kTillClosed = "Caja cerrada, debe aperturarla para poder trabajar";
inline constexpr const char* kTillOpen = "La caja ya está abierta";

// Throw TillRefusal. Inside the caller's transaction nobody changes it any more.
void RequireTillOpen(Connection& connection, std::int32_t till);
void RequireTillClosed(Connection& connection, std::int32_t till);

}  // namespace tpv
