#include "engines/check/SilentServer.h"

#include <winsock2.h>

#include <stdexcept>

namespace ondura::check {

// The system takes the connections by itself, as long as nobody asks for them.
SilentServer::SilentServer() {
  constexpr WORD kVersion = 0x0202;
  constexpr int kWaiting = 16;
  WSADATA data{};
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int size = sizeof address;
  auto* const place = reinterpret_cast<sockaddr*>(&address);
  if (WSAStartup(kVersion, &data) != 0) throw std::runtime_error("no network on this computer");
  listener_ = static_cast<std::intptr_t>(socket(AF_INET, SOCK_STREAM, 0));
  const auto listener = static_cast<SOCKET>(listener_);
  if (bind(listener, place, size) != 0 || listen(listener, kWaiting) != 0 ||
      getsockname(listener, place, &size) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  port_ = ntohs(address.sin_port);
}

SilentServer::~SilentServer() {
  closesocket(static_cast<SOCKET>(listener_));
  WSACleanup();
}

}  // namespace ondura::check
