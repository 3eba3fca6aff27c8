// Runs one of the system's programs (lp, lpstat) without a shell in between.
#pragma once

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace tpv {

// No program inherits the till's own settings (TPV_…): passwords are among them.

struct ProgramResult {
  bool found = false;  // whether there is such a program
  bool done = false;   // it ran to its end and says that all went well
  bool late = false;   // it was ended because it took too long
  std::string output;  // what it printed, errors too
};

// The program is looked for on the path and speaks no language but its own
// (LC_ALL=C). One that takes longer than it may is ended.
ProgramResult RunProgram(const std::vector<std::string>& words, std::string_view input = {},
                         std::chrono::milliseconds may_take = std::chrono::seconds(10));

// Starts a program of the desktop and leaves it alone. False when there is none, or
// when it gives up within the time that it is looked at.
bool LaunchProgram(const std::vector<std::string>& words, std::chrono::milliseconds look = {});

}  // namespace tpv
