#include "machines/libcrypto/LibcryptoCrypto.h"

#include <openssl/evp.h>

#include <algorithm>
#include <numeric>
#include <utility>

namespace ondura {

namespace {

constexpr std::string_view kBaseProvider = "Microsoft Base Cryptographic Provider v1.0";

// The Base Provider takes 40 bits of the hash and puts the salt after them.
constexpr std::size_t kKeyBytes = 5;
constexpr std::size_t kSaltBytes = 11;

template <std::size_t kSize>
std::optional<std::array<std::uint8_t, kSize>> Digest(const EVP_MD* algorithm, std::string_view bytes) {
  std::array<std::uint8_t, kSize> digest{};
  unsigned int length = 0;
  if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, algorithm, nullptr) != 1 ||
      length != kSize) {
    return std::nullopt;
  }
  return digest;
}

using CipherKey = std::array<std::uint8_t, kKeyBytes + kSaltBytes>;

std::optional<CipherKey> DeriveKey(const StreamCipherKey& source) {
  const auto hash = Digest<20>(EVP_sha1(), source.pass_phrase);
  if (!hash) return std::nullopt;
  CipherKey key{};
  std::copy_n(hash->begin(), kKeyBytes, key.begin());
  std::copy_n(source.salt.begin(), std::min(kSaltBytes, source.salt.size()), key.begin() + kKeyBytes);
  return key;
}

std::string Rc4(const CipherKey& key, std::string_view bytes) {
  std::array<std::uint8_t, 256> state{};
  std::iota(state.begin(), state.end(), std::uint8_t{0});
  for (std::size_t i = 0, j = 0; i < state.size(); ++i) {
    j = (j + state[i] + key[i % key.size()]) % state.size();
    std::swap(state[i], state[j]);
  }
  std::string result{bytes};
  std::size_t i = 0;
  std::size_t j = 0;
  for (char& c : result) {
    i = (i + 1) % state.size();
    j = (j + state[i]) % state.size();
    std::swap(state[i], state[j]);
    const auto mask = state[static_cast<std::size_t>(state[i] + state[j]) % state.size()];
    c = static_cast<char>(static_cast<std::uint8_t>(c) ^ mask);
  }
  return result;
}

}  // namespace

CryptoProvider LibcryptoCrypto::Acquire(std::string_view provider_name) {
  if (!provider_name.empty() && provider_name != kBaseProvider) return 0;
  acquired_.insert(++last_);
  return last_;
}

void LibcryptoCrypto::Release(CryptoProvider provider) { acquired_.erase(provider); }

std::optional<Md5Digest> LibcryptoCrypto::Md5(std::string_view bytes) { return Digest<16>(EVP_md5(), bytes); }

std::optional<std::string> LibcryptoCrypto::StreamCipher(CryptoProvider provider, const StreamCipherKey& key,
                                                         std::string_view bytes,
                                                         CipherDirection /*direction*/) {
  if (!acquired_.contains(provider)) return std::nullopt;
  const auto cipher_key = DeriveKey(key);
  if (!cipher_key) return std::nullopt;
  return Rc4(*cipher_key, bytes);
}

}  // namespace ondura
