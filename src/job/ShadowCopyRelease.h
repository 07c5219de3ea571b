#pragma once

namespace ondura {

// What the job asks of the shadow copy before a transfer.
class ShadowCopyRelease {
 public:
  virtual ~ShadowCopyRelease() = default;

  // Tells the helper and the engine to let go of the shadow copy, and gives them five seconds for it.
  virtual void CloseVSS() = 0;
};

}  // namespace ondura
