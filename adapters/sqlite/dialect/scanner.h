// Takes the literals out of a statement's text: what remains is its shape, the
// key under which the translated and prepared statement is found again.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/variant.h"

namespace tpv::dialect {

// What stands in a shape where a literal stood.
inline constexpr char kWholeMark = '\x01';
inline constexpr char kDecimalMark = '\x02';
inline constexpr char kTextMark = '\x03';

struct Scanned {
  std::string shape;
  std::vector<Variant> literals;  // in order: 64-bit integers, doubles, texts
};

// Numbers whose value decides the statement's meaning stay in the shape: behind
// TOP and "/", in ORDER BY, and the lengths of types. Throws DatabaseError for a
// text or comment that does not end.
Scanned Scan(std::string_view sql);

}  // namespace tpv::dialect
