#include "adapters/fiscal/libcrypto_digest.h"

#include <openssl/evp.h>

#include <array>
#include <stdexcept>

namespace tpv {

LibcryptoDigest::LibcryptoDigest() : sha256_(EVP_MD_fetch(nullptr, "SHA256", nullptr), &EVP_MD_free) {}

std::string LibcryptoDigest::Sha256(std::string_view bytes) const {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest;
  unsigned int length = 0;
  if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, sha256_.get(), nullptr) != 1) {
    throw std::runtime_error("No se puede calcular la huella del registro de facturación");
  }
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (unsigned int i = 0; i < length; ++i) {
    text += kDigits[digest[i] >> 4];
    text += kDigits[digest[i] & 15];
  }
  return text;
}

}  // namespace tpv
