#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ondura {

// One look-up with the start and the clean-up around it.
struct NameLookup {
  bool started = false;              // WSAStartup with version 257
  std::optional<std::string> found;  // a dotted address or a host name; std::nullopt if there is none
  bool cleaned_up = false;           // WSACleanup
  bool is_address = false;           // inet_addr read the text; of NameOf alone
};

// On Windows: WSAStartup, gethostbyname, inet_addr, gethostbyaddr, WSACleanup.
class NameResolution {
 public:
  virtual ~NameResolution() = default;

  // The first address of the host.
  virtual NameLookup AddressOf(std::string_view host_name) = 0;

  // The name of an address in any form that inet_addr reads ("127.0.0.1", "127.1", "0x7f000001"). Not found
  // too if the text is not an address, which 255.255.255.255 counts as.
  virtual NameLookup NameOf(std::string_view address) = 0;
};

}  // namespace ondura
