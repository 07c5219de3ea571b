#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "job/ShadowCopyRelease.h"
#include "platform/machine.h"
#include "profile/Installation.h"
#include "reporting/Trace.h"
#include "util/Programs.h"
#include "util/StartedProgram.h"
#include "util/TextFiles.h"

namespace ondura {

// The shadow copy of open files: who wants one says so in status files of the data folder, an elevated
// host serves the request, and the job asks for the end of it.
class ShadowCopy : public ShadowCopyRelease {
 public:
  ShadowCopy(const Machine& machine, const Installation& installation, Trace& trace, MachineFacts& facts,
             Programs& programs)
      : machine_(machine),
        installation_(installation),
        trace_(trace),
        facts_(facts),
        programs_(programs),
        text_files_(machine.files, machine.code_page) {}

  // At start-up: no request is being served.
  void ClearLaunchFlag() { g_bLaunchVSS = false; }

  // Writes "0" into both closing files, also where they are missing, and waits.
  void CloseVSS() override;

  // Writes "0" into those of the status files that exist, and waits.
  void CheckAndCloseVSS();

  // After a job: the request goes back to "0", where there is such a file at all.
  void ResetLaunchStatus();

  // Serves a request, if there is one, until the helper has ended or reported. Called again and again; a
  // call that comes in meanwhile returns at once.
  void Cont_LaunchAdminProcess();

 private:
  void Serve(bool is_64_bit);
  std::string ReadCommand();
  ProcessHandle LaunchHelper(const std::string& helper, const std::string& command);
  void WaitForEnd(StartedProgram& helper);
  void WaitForReport();
  void WriteLine(std::string_view name, std::string_view line);
  void WriteLineIfPresent(std::string_view name, std::string_view line);

  Machine machine_;
  const Installation& installation_;
  Trace& trace_;
  MachineFacts& facts_;
  Programs& programs_;
  TextFiles text_files_;
  bool g_bLaunchVSS = false;
};

}  // namespace ondura
