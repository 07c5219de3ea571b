#include "rehearsal/common/OwnWindows.h"

namespace ondura::rehearsal {

namespace {

class NoWindows : public OwnWindows {
 public:
  void Pump() override {}
};

}  // namespace

std::unique_ptr<OwnWindows> ShowDialogs(const std::vector<std::string_view>& /*titles*/) {
  return std::make_unique<NoWindows>();
}

}  // namespace ondura::rehearsal
