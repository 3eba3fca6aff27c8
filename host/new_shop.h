// The two stores that the program makes by itself: a shop of one's own, and the demonstration.
#pragma once

#include <string>

namespace tpv {

class Clock;
namespace ui {
class FrontEnd;
}

// Opens the window of a new shop; where it was stored, "" when the operator gave it up.
std::string CreateShop(ui::FrontEnd& front_end, const Clock& clock);

// Where the demonstration is, made first when there is none. Throws FileError and DatabaseError.
std::string MakeDemonstration(const Clock& clock);

}  // namespace tpv
