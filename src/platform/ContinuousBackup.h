#pragma once

namespace ondura {

enum class ContinuousBackupState { kPause = 0, kResume = 1 };

// The client's continuous (real-time) backup. Both calls do nothing if it is not installed, and nobody learns
// whether they succeed.
//
// On Windows: the library OnduraERealTime, loaded at run time.
class ContinuousBackup {
 public:
  virtual ~ContinuousBackup() = default;

  virtual void PostCDPStatusMsg(ContinuousBackupState state) = 0;

  virtual void ValidateLocalDBDllVersion() = 0;
};

}  // namespace ondura
