// SHA-256 by libcrypto.
#pragma once

#include "platform/digest.h"

namespace tpv {

class LibcryptoDigest : public Digest {
 public:
  std::string Sha256(std::string_view bytes) const override;
};

}  // namespace tpv
