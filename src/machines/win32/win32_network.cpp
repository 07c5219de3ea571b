#include "machines/win32/windows_api.h"

#include <winsock2.h>

#include <wininet.h>

#include <array>

#include "machines/win32/ports.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

constexpr std::size_t kConnectionNameBytes = 255;
constexpr DWORD kStatedNameBytes = 254;

constexpr WORD kWinsockVersion = 257;  // 1.1
constexpr int kAddressBytes = 4;

class Win32Internet : public Internet {
 public:
  ConnectedState ExtendedState() override {
    std::array<char, kConnectionNameBytes> name{};
    DWORD flags = 0;
    const bool connected = InternetGetConnectedStateExA(&flags, name.data(), kStatedNameBytes, 0) == TRUE;
    return {connected, flags, FromSystem(name.data())};
  }

  bool IsConnected() override {
    DWORD flags = 0;
    return InternetGetConnectedState(&flags, 0) != FALSE;
  }
};

NameLookup AddressOfHost(const std::string& name) {
  const hostent* const host = gethostbyname(name.c_str());
  if (host == nullptr || host->h_addrtype != AF_INET || host->h_addr_list[0] == nullptr) return {};
  std::string dotted;
  for (int i = 0; i < kAddressBytes; ++i) {
    const auto byte = static_cast<unsigned char>(host->h_addr_list[0][i]);
    dotted += (i == 0 ? "" : ".") + std::to_string(byte);
  }
  return {.found = dotted};
}

NameLookup NameOfAddress(const std::string& address) {
  const unsigned long number = inet_addr(address.c_str());
  if (number == INADDR_NONE) return {};
  const hostent* const host = gethostbyaddr(reinterpret_cast<const char*>(&number), kAddressBytes, AF_INET);
  return {.found = host == nullptr ? std::nullopt : std::optional{FromSystem(host->h_name)},
          .is_address = true};
}

// One look-up between the start of the sockets and their end.
NameLookup LookUp(NameLookup (*look_up)(const std::string&), const std::string& text) {
  WSADATA started{};
  if (WSAStartup(kWinsockVersion, &started) != 0) return {};
  NameLookup lookup = look_up(text);
  lookup.started = true;
  lookup.cleaned_up = WSACleanup() == 0;
  return lookup;
}

class Win32NameResolution : public NameResolution {
 public:
  NameLookup AddressOf(std::string_view host_name) override {
    return LookUp(&AddressOfHost, ToSystem(host_name));
  }

  NameLookup NameOf(std::string_view address) override { return LookUp(&NameOfAddress, ToSystem(address)); }
};

}  // namespace

std::unique_ptr<Internet> MakeWin32Internet() { return std::make_unique<Win32Internet>(); }

std::unique_ptr<NameResolution> MakeWin32NameResolution() { return std::make_unique<Win32NameResolution>(); }

}  // namespace ondura
