#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ondura {

// A provider handle; 0 means no provider.
using CryptoProvider = std::int32_t;

using Md5Digest = std::array<std::uint8_t, 16>;

struct StreamCipherKey {
  std::string_view pass_phrase;  // bytes; hashed with SHA-1 into the key
  std::string_view salt;         // bytes; KP_SALT
};

enum class CipherDirection { kDecrypt, kEncrypt };

// The platform's cryptographic interface.
//
// On Windows: CryptAcquireContextA, CryptCreateHash, CryptHashData, CryptGetHashParam, CryptDeriveKey,
// CryptSetKeyParam, CryptEncrypt, CryptDecrypt of the Microsoft Base Cryptographic Provider v1.0, whose RC4
// keys have 40 bits and a salt of 11 bytes after them.
class Crypto {
 public:
  virtual ~Crypto() = default;

  // 0 if the provider is not available. An empty name means the default provider for verification.
  virtual CryptoProvider Acquire(std::string_view provider_name) = 0;

  // Ignores 0 and a provider that is released already.
  virtual void Release(CryptoProvider provider) = 0;

  // std::nullopt if the system's provider fails.
  virtual std::optional<Md5Digest> Md5(std::string_view bytes) = 0;

  // RC4 under the SHA-1 of the pass phrase; keeps the length. std::nullopt for provider 0 or a failed call.
  virtual std::optional<std::string> StreamCipher(CryptoProvider provider, const StreamCipherKey& key,
                                                  std::string_view bytes, CipherDirection direction) = 0;
};

}  // namespace ondura
