#include "profile/file_digest.h"

#include <cstdint>
#include <limits>
#include <optional>

namespace ondura {

namespace {

std::string HexOf(const Md5Digest& digest) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : digest) {
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0xFU];
  }
  return text;
}

std::optional<Md5Digest> DigestOf(Crypto& crypto, std::string_view bytes) {
  const CryptoProvider provider = crypto.Acquire("");
  if (provider == 0) return std::nullopt;
  const auto digest = crypto.Md5(bytes);
  crypto.Release(provider);
  return digest;
}

}  // namespace

std::string FileMd5Hex(const Machine& machine, std::string_view sFilePath) {
  // The platform's 32-bit file size turns negative at 2 GiB.
  constexpr std::uint64_t kLargestBytes = std::numeric_limits<std::int32_t>::max();
  const auto size = machine.files.Size(sFilePath);
  if (!size || *size == 0 || *size > kLargestBytes) return {};
  const auto bytes = machine.files.ReadAlone(sFilePath);
  if (!bytes) return {};
  const auto digest = DigestOf(machine.crypto, *bytes);
  return digest ? HexOf(*digest) : std::string{};
}

}  // namespace ondura
