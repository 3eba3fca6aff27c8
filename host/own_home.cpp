#include "host/own_home.h"

#include <cstdlib>

#include "adapters/files/private_files.h"

namespace tpv {

OwnHome::OwnHome() {
  for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"}) {
    if (const char* value = std::getenv(name)) before_.emplace_back(name, value);
    ::unsetenv(name);
  }
  ::setenv("HOME", folder_.path().c_str(), 1);
}

OwnHome::~OwnHome() {
  ::unsetenv("HOME");
  for (const auto& [name, value] : before_) ::setenv(name, value.c_str(), 1);
}

void OwnHome::Write(const std::string& name, const std::string& text) const {
  ReplacePrivateFile(folder_ / name, text);
}

}  // namespace tpv
