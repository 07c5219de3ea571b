#pragma once

#include <string>
#include <string_view>

#include "platform/CodePage.h"
#include "platform/Crypto.h"

namespace ondura {

// The provider that a caller of Encryption asks the platform for.
inline constexpr std::string_view kEncryptionProvider = "Microsoft Base Cryptographic Provider v1.0";
inline constexpr std::string_view kEncryptionPassPhrase = "CedarSmoke";
inline constexpr std::string_view kEncryptionSalt = "ÑÒÓÕØÙÚÜÝÞß";

// A stream cipher on the platform's cryptographic interface, for the hosts. No stored value passes through
// it.
class Encryption {
 public:
  Encryption(Crypto& crypto, CodePage& code_page) : crypto_(crypto), code_page_(code_page) {}

  // Set by the caller; the class neither acquires nor releases it.
  CryptoProvider hCryptProv = 0;

  // The text transformed under the pass phrase, as raw code page characters; "Error" on any failure. Only a
  // text that the code page can hold comes back whole.
  [[nodiscard]] std::string EncryptDecrypt(std::string_view sText, std::string_view sPassPhrase,
                                           bool bEncrypt) const;

 private:
  Crypto& crypto_;
  CodePage& code_page_;
};

}  // namespace ondura
