// A home folder for as long as a script plays: what the program keeps goes there and with it.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "adapters/files/temporary_folder.h"

namespace tpv {

class OwnHome {
 public:
  OwnHome();
  ~OwnHome();
  OwnHome(const OwnHome&) = delete;
  OwnHome& operator=(const OwnHome&) = delete;

  void Write(const std::string& name, const std::string& text) const;

 private:
  TemporaryFolder folder_;
  std::vector<std::pair<const char*, std::string>> before_;  // variables that were set
};

}  // namespace tpv
