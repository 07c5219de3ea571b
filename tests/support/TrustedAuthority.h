#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "machines/win32/windows_api.h"

#include <wincrypt.h>

namespace ondura {

// Has the user's own store hold an authority. Wine alone lets that happen unasked, and its way of deleting
// from the store leaves what the registry holds of it.
class TrustedAuthority {
 public:
  explicit TrustedAuthority(const std::string& pem) {
    std::vector<BYTE> bytes(pem.size());
    auto size = static_cast<DWORD>(bytes.size());
    const HCERTSTORE store =
        CertOpenStore(CERT_STORE_PROV_SYSTEM_A, 0, 0, CERT_SYSTEM_STORE_CURRENT_USER, "Root");
    PCCERT_CONTEXT held = nullptr;
    const bool added = CryptStringToBinaryA(pem.c_str(), 0, CRYPT_STRING_BASE64HEADER, bytes.data(), &size,
                                            nullptr, nullptr) != FALSE &&
                       CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING, bytes.data(), size,
                                                        CERT_STORE_ADD_REPLACE_EXISTING, &held) != FALSE;
    if (!added) throw std::runtime_error("the authority was not added");
    std::array<BYTE, 20> print{};
    auto print_size = static_cast<DWORD>(print.size());
    CertGetCertificateContextProperty(held, CERT_SHA1_HASH_PROP_ID, print.data(), &print_size);
    for (const BYTE byte : print) {
      constexpr std::string_view kDigits = "0123456789ABCDEF";
      key_.append({kDigits[byte >> 4U], kDigits[byte & 0xFU]});
    }
    CertFreeCertificateContext(held);
    CertCloseStore(store, 0);
  }
  ~TrustedAuthority() { RegDeleteTreeA(HKEY_CURRENT_USER, key_.c_str()); }
  TrustedAuthority(const TrustedAuthority&) = delete;
  TrustedAuthority& operator=(const TrustedAuthority&) = delete;

 private:
  std::string key_ = R"(Software\Microsoft\SystemCertificates\Root\Certificates\)";
};

}  // namespace ondura
