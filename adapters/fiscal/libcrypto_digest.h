// SHA-256 by libcrypto.
#pragma once

#include <memory>

#include "platform/digest.h"

struct evp_md_st;

namespace tpv {

class LibcryptoDigest : public Digest {
 public:
  LibcryptoDigest();
  std::string Sha256(std::string_view bytes) const override;

 private:
  // Looked up once: the library takes longer for that than for a record's digest.
  const std::shared_ptr<evp_md_st> sha256_;
};

}  // namespace tpv
