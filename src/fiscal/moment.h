// The moment of a record: the wall clock of Madrid or the Canaries with its distance
// from universal time, right on both sides of a clock change.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/date_time.h"

namespace tpv::fiscal {

enum class Zone { Madrid, Canaries };

// "2026-11-24T10:30:00+01:00" for a moment of universal time.
std::string MomentText(Zone zone, const DateTime& utc);
// Back to universal time; nullopt for another text.
std::optional<DateTime> MomentUtc(std::string_view moment);

// Universal time of a wall clock's; of the hour that comes twice, the first.
DateTime UtcOfWall(Zone zone, const DateTime& wall);

}  // namespace tpv::fiscal
