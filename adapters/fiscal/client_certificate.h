// The certificate that the shop shows to the tax agency, and its key.
#pragma once

#include <string>

#include "adapters/fiscal/agency_settings.h"

namespace tpv::fiscal {

struct ClientCertificate {
  std::string certificate;  // PEM, with those who vouch for it
  std::string key;          // PEM, not encrypted: it stays in memory
};

// Throws CannotSend with what is wrong: no file, one that others may read, another
// password, a key that is not the certificate's, out of date.
ClientCertificate LoadCertificate(const AgencySettings& settings);
// What keeps the certificate of these settings from being used; "" when it can be.
std::string CertificateTrouble(const Settings& settings);

}  // namespace tpv::fiscal
