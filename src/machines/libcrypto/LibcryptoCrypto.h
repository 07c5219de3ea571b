#pragma once

#include <cstdint>
#include <set>

#include "platform/Crypto.h"

namespace ondura {

// The Crypto port on OpenSSL's digests. RC4 is done here: libcrypto keeps it in a provider that many
// installations leave out.
class LibcryptoCrypto : public Crypto {
 public:
  // Knows the default provider and the Microsoft Base Cryptographic Provider v1.0.
  CryptoProvider Acquire(std::string_view provider_name) override;
  void Release(CryptoProvider provider) override;
  std::optional<Md5Digest> Md5(std::string_view bytes) override;
  std::optional<std::string> StreamCipher(CryptoProvider provider, const StreamCipherKey& key,
                                          std::string_view bytes, CipherDirection direction) override;

 private:
  std::set<CryptoProvider> acquired_;
  CryptoProvider last_ = 0;
};

}  // namespace ondura
