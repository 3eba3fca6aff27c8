// Which server a till talks to, and as whom. A password reaches the program
// through the environment, a file of the user alone or the data source's own
// settings; a command line shows in every process list, so it is refused there.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tpv::odbc {

// What a technician wrote makes no sense or is not safe. Spanish, no secrets.
class TargetError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Target {
  std::string connection;  // an ODBC connection string without a password
  std::string user;        // "" leaves it to the connection string
  std::string password;    // "" leaves it to the data source
  bool encrypt = false;    // refuse a server that talks in clear or is not the shop's
  std::string ca_file;     // who vouches for it; "" for the machine's own authorities
};

using Environment = std::function<std::optional<std::string>(const char* name)>;
std::optional<std::string> ProcessEnvironment(const char* name);

// `argument` is a connection string ("Driver=FreeTDS;Server=…;Database=…") or
// the name of a data source. User and password come from TPV_ODBC_USER and
// TPV_ODBC_PASSWORD, or from the file that TPV_ODBC_CREDENTIALS names (lines
// "user=…", "password=…"); TPV_ODBC_ENCRYPT=yes demands encryption, TPV_ODBC_CA names the
// authority's certificate. Throws TargetError for a password in `argument` and for
// a file that others can read.
Target ReadTarget(std::string_view argument, const Environment& environment = ProcessEnvironment);

// What a session begins with, the same each time.
struct Login {
  std::string text;              // for the driver manager; holds the password, never shown
  std::string secret;            // the password alone, to be kept out of messages
  bool with_credentials;         // whether a user and a password are given anywhere
  bool encrypted;                // whether encryption is demanded
  std::string freetds_settings;  // "" when the text needs none (encryption.h)
};

// Throws TargetError when encryption is demanded and cannot be had for sure.
Login LoginTo(const Target& target);

}  // namespace tpv::odbc
