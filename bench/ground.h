// What a small store and a large one must have alike for their lists to be
// comparable; far before the sales that the store was filled with.
#pragma once

#include <string>

#include "platform/clock.h"

namespace tpv::bench {

inline constexpr int kOpenTickets = 5000;
inline constexpr int kDebtor = 77;  // a customer with 20 open tickets
inline constexpr const char* kClosuresFrom = "1990-01-01";
inline constexpr const char* kClosuresTo = "1990-12-31";

// Open tickets of five lines until there are 5,000 in all, and the closures of a
// year of three tills.
void AddCommonGround(const std::string& path, const Clock& clock);

}  // namespace tpv::bench
