#include "machines/win32/windows_api.h"

#include <wincrypt.h>

#include <algorithm>
#include <array>
#include <map>

#include "machines/win32/handles.h"
#include "machines/win32/ports.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

// What the base provider takes after a key of 40 bits.
constexpr std::size_t kSaltBytes = 11;

struct ProviderHandle {
  using Value = HCRYPTPROV;
  static bool IsValid(Value provider) { return provider != 0; }
  static void Close(Value provider) { CryptReleaseContext(provider, 0); }
};

struct HashHandle {
  using Value = HCRYPTHASH;
  static bool IsValid(Value hash) { return hash != 0; }
  static void Close(Value hash) { CryptDestroyHash(hash); }
};

struct KeyHandle {
  using Value = HCRYPTKEY;
  static bool IsValid(Value key) { return key != 0; }
  static void Close(Value key) { CryptDestroyKey(key); }
};

using UniqueProvider = Unique<ProviderHandle>;
using UniqueHash = Unique<HashHandle>;
using UniqueKey = Unique<KeyHandle>;

const BYTE* Bytes(std::string_view text) { return reinterpret_cast<const BYTE*>(text.data()); }

bool Acquired(const char* provider_name, UniqueProvider& provider) {
  return CryptAcquireContextA(provider.Receive(), nullptr, provider_name, PROV_RSA_FULL,
                              CRYPT_VERIFYCONTEXT) != FALSE;
}

bool Hashed(HCRYPTPROV provider, ALG_ID algorithm, std::string_view bytes, UniqueHash& hash) {
  return CryptCreateHash(provider, algorithm, 0, 0, hash.Receive()) &&
         CryptHashData(hash.get(), Bytes(bytes), static_cast<DWORD>(bytes.size()), 0);
}

bool KeyDerived(HCRYPTPROV provider, const StreamCipherKey& source, UniqueHash& hash, UniqueKey& key) {
  // The platform reads all the bytes of a salt, however long the one that was given.
  std::array<BYTE, kSaltBytes> salt{};
  std::copy_n(source.salt.begin(), std::min(kSaltBytes, source.salt.size()), salt.begin());
  return Hashed(provider, CALG_SHA1, source.pass_phrase, hash) &&
         CryptDeriveKey(provider, CALG_RC4, hash.get(), CRYPT_EXPORTABLE, key.Receive()) &&
         CryptSetKeyParam(key.get(), KP_SALT, salt.data(), 0);
}

class Win32Crypto : public Crypto {
 public:
  CryptoProvider Acquire(std::string_view provider_name) override {
    UniqueProvider provider;
    const std::string name = ToSystem(provider_name);
    if (!Acquired(name.empty() ? nullptr : name.c_str(), provider)) return 0;
    providers_[++last_] = std::move(provider);
    return last_;
  }

  void Release(CryptoProvider provider) override { providers_.erase(provider); }

  std::optional<Md5Digest> Md5(std::string_view bytes) override {
    UniqueProvider provider;
    UniqueHash hash;
    Md5Digest digest{};
    auto size = static_cast<DWORD>(digest.size());
    const bool done = Acquired(nullptr, provider) && Hashed(provider.get(), CALG_MD5, bytes, hash) &&
                      CryptGetHashParam(hash.get(), HP_HASHVAL, digest.data(), &size, 0);
    return done ? std::optional{digest} : std::nullopt;
  }

  std::optional<std::string> StreamCipher(CryptoProvider provider, const StreamCipherKey& key,
                                          std::string_view bytes, CipherDirection direction) override {
    const auto found = providers_.find(provider);
    UniqueHash hash;
    UniqueKey derived;
    if (found == providers_.end() || !KeyDerived(found->second.get(), key, hash, derived))
      return std::nullopt;
    std::string text{bytes};
    auto* const data = reinterpret_cast<BYTE*>(text.data());
    auto length = static_cast<DWORD>(text.size());
    const BOOL done = direction == CipherDirection::kEncrypt
                          ? CryptEncrypt(derived.get(), 0, TRUE, 0, data, &length, length)
                          : CryptDecrypt(derived.get(), 0, TRUE, 0, data, &length);
    if (!done) return std::nullopt;
    text.resize(length);
    return text;
  }

 private:
  // A provider's handle is as wide as a pointer, the caller's number is not.
  std::map<CryptoProvider, UniqueProvider> providers_;
  CryptoProvider last_ = 0;
};

}  // namespace

std::unique_ptr<Crypto> MakeWin32Crypto() { return std::make_unique<Win32Crypto>(); }

}  // namespace ondura
