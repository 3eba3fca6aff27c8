// What the office's windows need of the machine beside the ports of a till.
#pragma once

#include <functional>
#include <string>

namespace tpv {
class TableFiles;
}

namespace tpv::office {

struct Tools {
  TableFiles* tables = nullptr;  // of spreadsheets; "~/" is understood
  // What keeps this machine from sending invoice records; "" when it can. Unset: nobody knows.
  std::function<std::string()> agency_obstacle{};
};

}  // namespace tpv::office
