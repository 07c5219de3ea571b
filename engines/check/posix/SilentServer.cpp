#include "engines/check/SilentServer.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>

namespace ondura::check {

// The system takes the connections by itself, as long as nobody asks for them.
SilentServer::SilentServer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  constexpr int kWaiting = 16;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  const int listener = static_cast<int>(listener_);
  auto* const place = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener, place, size) != 0 || listen(listener, kWaiting) != 0 ||
      getsockname(listener, place, &size) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  port_ = ntohs(address.sin_port);
}

SilentServer::~SilentServer() { close(static_cast<int>(listener_)); }

}  // namespace ondura::check
