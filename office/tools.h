// What the office's windows need of the machine beside the ports of a till.
#pragma once

#include <functional>
#include <string>

namespace tpv {
class TableFiles;
}

namespace tpv::office {

struct Tools {
  TableFiles* tables = nullptr;  // of spreadsheets; null in a build without
  // Lets the operator point to a file: the window's title and a kind of file, "CSV (*.csv)".
  // "" when none was chosen. Unset: the path is typed.
  std::function<std::string(const std::string& title, const std::string& kind)> choose_file;
  // What keeps this machine from sending invoice records; "" when it can. Unset: nobody knows.
  std::function<std::string()> agency_obstacle;
};

}  // namespace tpv::office
