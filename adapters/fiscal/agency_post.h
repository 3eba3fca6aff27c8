// Hands a message to the tax agency over TLS and waits for its answer.
#pragma once

#include <functional>
#include <string>

#include "adapters/fiscal/client_certificate.h"

namespace tpv::fiscal {

// The answer's body. `stop` is asked once a second; true gives up. Ends within a minute
// however the server behaves. Throws NoAnswer.
std::string Post(const std::string& url, const std::string& message, const ClientCertificate& certificate,
                 const std::string& ca_file, const std::function<bool()>& stop);

}  // namespace tpv::fiscal
