#include "profile/Encryption.h"

namespace ondura {

std::string Encryption::EncryptDecrypt(std::string_view sText, std::string_view sPassPhrase,
                                       bool bEncrypt) const {
  const std::string pass_phrase = code_page_.FromUtf8(sPassPhrase);
  const std::string salt = code_page_.FromUtf8(kEncryptionSalt);
  const auto direction = bEncrypt ? CipherDirection::kEncrypt : CipherDirection::kDecrypt;
  const auto bytes =
      crypto_.StreamCipher(hCryptProv, {pass_phrase, salt}, code_page_.FromUtf8(sText), direction);
  return bytes ? code_page_.ToUtf8(*bytes) : "Error";
}

}  // namespace ondura
