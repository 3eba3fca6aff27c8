// tpv play: scenarios against the real component.
#pragma once

#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/date_time.h"
#include "host/stage.h"

namespace tpv {

// A command line that makes no sense.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct PlayOptions {
  std::string store;   // "" for a temporary one each file
  std::string server;  // what follows --odbc; "" for an embedded store
  bool empty = false;
  bool windows = false;     // real windows instead of none
  ScreenSize screen;        // for those windows, where there is no display
  std::string paper;        // folder that gets what is printed, as text and PDF
  std::string screenshots;  // folder for a picture a script, as it stood before its last command
  int user = 1;
  std::optional<DateTime> now;
  std::vector<std::string> files;
};

// Throws UsageError for what it does not understand.
PlayOptions ReadPlayOptions(const std::vector<std::string>& arguments);

// 0 when every expectation held, 1 when one failed. Throws ScriptError for a
// script that is wrong and UsageError for a wrong option.
int Play(const PlayOptions& options, std::ostream& transcript);

}  // namespace tpv
