// The statements that the screens send, heard while all scenarios are played.
#pragma once

#include <map>
#include <string>

namespace tpv::bench {

struct Heard {
  std::string text;  // as first sent
  int times = 0;
};

// By shape. `folder` holds the scenarios.
std::map<std::string, Heard> HearScenarios(const std::string& folder);

}  // namespace tpv::bench
