// With which certificate this till reaches the tax agency, from the user's settings
// (docs/fiscal.md).
#pragma once

#include <string>

#include "platform/settings.h"

namespace tpv::fiscal {

struct AgencySettings {
  std::string certificate;  // a PEM or PKCS#12 file; "" when none is set
  std::string key;          // a PEM file of the key's own; "" when it is in the certificate's
  std::string password;     // of the key; "" for none
  bool seal = false;        // the certificate is a seal of the company
  std::string ca_file;      // who vouches for the server; "" for the machine's authorities
  std::string test_server;  // instead of the agency's for tests; "" for the agency's
};

AgencySettings ReadAgencySettings(const Settings& settings);

// Where messages of records go. Real ones go to nobody but the agency.
std::string AgencyUrl(const AgencySettings& settings, bool real);

}  // namespace tpv::fiscal
