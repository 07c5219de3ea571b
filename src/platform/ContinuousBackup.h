#pragma once

namespace ondura {

enum class ContinuousBackupState { kPause = 0, kResume = 1 };

// The client's continuous (real-time) backup. Where it is not installed both calls do nothing.
//
// On Windows: the library OnduraERealTime, loaded at run time.
class ContinuousBackup {
 public:
  virtual ~ContinuousBackup() = default;

  virtual void PostCDPStatusMsg(ContinuousBackupState state) = 0;

  virtual void ValidateLocalDBDllVersion() = 0;
};

}  // namespace ondura
