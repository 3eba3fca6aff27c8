// The port to a cryptographic digest.
#pragma once

#include <string>
#include <string_view>

namespace tpv {

class Digest {
 public:
  virtual ~Digest() = default;
  // SHA-256 of the bytes as 64 upper-case hexadecimal digits. Throws
  // std::runtime_error when the library refuses.
  virtual std::string Sha256(std::string_view bytes) const = 0;
};

}  // namespace tpv
