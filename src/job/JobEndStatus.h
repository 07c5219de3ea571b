#pragma once

#include <cstdint>
#include <string_view>

#include "engine/engine_results.h"
#include "job/JobServices.h"
#include "job/StatusKeys.h"
#include "job/job_state.h"
#include "util/TextFiles.h"

namespace ondura {

// What a job leaves for its user at its end.
enum class JobEnd { kOrdinary, kCutOff, kMissedRun, kWrongPassword, kQuotaUsedUp };

// The end by a result of the engine. One that has no sentence of its own is ordinary.
JobEnd JobEndOf(EngineResult result);

// What a job leaves for its readers: SchStatus.txt and SchStatusError.txt with one sentence each, and the
// keys that ask for a window.
class JobEndStatus {
 public:
  JobEndStatus(JobServices& services, JobState& state, StatusKeys& keys);

  // Each call replaces what the one before it wrote.
  void WriteJobEndStatus(JobEnd end);
  void WriteJobEndStatus(EngineResult result) { WriteJobEndStatus(JobEndOf(result)); }

  // The end of a job by a message of its own: a routine of the system that no step calls at present.
  enum class Target { kStatusFile, kErrorFile };
  void WriteJobMessage(std::string_view text, Target target, std::int16_t indicator);

  // Both files gone and an empty SchStatus.txt in place: the start of a job.
  void ResetStatusFiles();

  // Replaces the sentence in SchStatus.txt.
  void WriteStatusText(std::string_view text);

  // "Backup has failed." in SchStatusError.txt.
  void WriteBackupFailed();

 private:
  bool IsDefaultUsersJob();
  void WriteStatusWindow(JobEnd end);
  void WriteSentence(JobEnd end);
  void TraceSessionFile();

  JobServices& services_;
  JobState& state_;
  StatusKeys& keys_;
  TextFiles text_files_;
};

}  // namespace ondura
