#pragma once

#include <cstdint>
#include <string>

namespace ondura {

struct ConnectedState {
  bool connected = false;
  std::uint32_t flags = 0;
  std::string connection_name;
};

// What the system says about being connected; no traffic.
//
// On Windows: InternetGetConnectedStateEx with a name buffer of 255 and a stated size of 254, and
// InternetGetConnectedState.
class Internet {
 public:
  virtual ~Internet() = default;

  // Not connected, without a name, if the system can't say.
  virtual ConnectedState ExtendedState() = 0;

  // False also if the system can't say.
  virtual bool IsConnected() = 0;
};

}  // namespace ondura
