// The user's settings in one text file, as a technician can read and edit it:
//
//   [OKRA/Printer]
//   Spool=Barra
//
// The password for mail is in it, so only the user can read it.
#pragma once

#include <string>
#include <vector>

#include "platform/settings.h"

namespace tpv {

class FileSettings : public Settings {
 public:
  // The usual file is `ConfigFolder() + "/tpv.conf"`; it need not exist.
  explicit FileSettings(std::string path) : path_(std::move(path)) {}

  // Names are found regardless of case. Throws FileError when the file is there
  // and cannot be read.
  std::string Read(std::string_view application, std::string_view section,
                   std::string_view key) const override;
  // "" takes the value away. Lines it does not know, comments too, stay as they
  // are. Throws FileError; the file is then as it was.
  void Write(std::string_view application, std::string_view section, std::string_view key,
             std::string_view value) override;
  std::vector<std::string> Keys(std::string_view application, std::string_view section) const override;

  // Keeps a file with a password from other users' eyes; what the operator should
  // read about that, "" when there was nothing to do. Throws FileError when it cannot.
  std::string Protect();

  const std::string& path() const { return path_; }

 private:
  std::vector<std::string> Lines() const;

  std::string path_;
};

}  // namespace tpv
