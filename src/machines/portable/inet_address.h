#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ondura {

// The number of an address, first part highest, as inet_addr reads it: one to four parts, each decimal, octal
// or hexadecimal, the last of which fills the bytes that are left; text after a blank does not count. One
// blank alone is 0. std::nullopt for any other text, and for 255.255.255.255, whose number is that of the
// failure.
std::optional<std::uint32_t> InetAddress(std::string_view text);

}  // namespace ondura
