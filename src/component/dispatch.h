// ZRTPVE driven by member name or dispatch id with variants.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string_view>

#include "base/variant.h"

namespace tpv {

class Zrtpve;

enum class InvokeKind { Get, Put, PutReference, Call };

enum class DispatchFault { UnknownName, UnknownId, WrongKind, WrongCount, BadValue };

class DispatchError : public std::runtime_error {
 public:
  DispatchError(DispatchFault fault, const std::string& text)
      : std::runtime_error(text), fault_(fault) {}
  DispatchFault fault() const { return fault_; }

 private:
  DispatchFault fault_;
};

struct Member {
  std::string_view name;
  std::uint32_t id;
  bool property;
  std::size_t arguments;
};

// The members in the order of the interface.
std::span<const Member> Members();

// By name regardless of case; throws DispatchError (UnknownName).
std::uint32_t DispatchId(std::string_view name);

// Gets, puts or calls. A put takes one argument; MyBd is put by reference alone.
// Arguments by reference are written back. A value that does not fit is
// BadValue, naming value and member; errors of the member itself pass through.
Variant Invoke(Zrtpve& component, std::uint32_t id, InvokeKind kind, std::span<Variant> arguments);

}  // namespace tpv
