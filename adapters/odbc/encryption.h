// Encryption that is demanded: the till talks to nobody but the server that an
// authority vouches for under its name. What that takes differs by driver.
#pragma once

#include <string>

#include "adapters/odbc/connection_string.h"

namespace tpv::odbc {

struct Verified {
  Pairs pairs;
  std::string freetds_settings;  // a freetds.conf that the pairs refer to; "" for none
};

// `ca_file` holds the authority's certificate, "" stands for the machine's own
// authorities. Throws TargetError, which says what is missing, when this driver or
// this connection cannot verify.
Verified DemandEncryption(const Pairs& pairs, const std::string& ca_file);

// From now on FreeTDS reads this in place of its own files. One connection after
// the other.
void UseFreeTdsSettings(const std::string& text);

}  // namespace tpv::odbc
