#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Client.h"
#include "engines/common/candidate.h"
#include "schedule/job_kind.h"

namespace ondura::engines {

// What the job's stage has prepared beside the user's own files: a dump of SQL Server or Exchange data or the
// System State. The header word of the schedule file names the kind of job, the profile the folder. The job
// deletes the folder after a good transfer, so an engine that leaves it out loses the dump.
class StageData {
 public:
  explicit StageData(Client& client);

  // True for a job without a stage.
  [[nodiscard]] bool IsEmpty() const { return root_.empty(); }

  // With a backslash at its end.
  [[nodiscard]] const std::string& folder() const { return root_; }

  // What kind of job runs, by the word for it: "files", "sql" ...
  [[nodiscard]] std::string_view KindWord() const;

  // Every file there is. Neither the user's exclusions nor an automatic selection count here.
  std::vector<Candidate> Files();

 private:
  [[nodiscard]] std::optional<JobKind> Kind() const;
  [[nodiscard]] std::string Folder() const;
  [[nodiscard]] std::string SystemStateFolder() const;

  Client& client_;
  std::string root_;  // with a backslash at its end
};

}  // namespace ondura::engines
