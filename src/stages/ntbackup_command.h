#pragma once

#include <string>
#include <string_view>

namespace ondura {

// How much the tool writes into its log.
enum class NtbackupLog { kSummary, kFull, kNone };

// The choices of the tool's command line. A job takes them as they are here.
struct NtbackupChoices {
  bool verify = true;
  NtbackupLog log = NtbackupLog::kSummary;
  bool restricted_access = false;
  bool remote_storage = false;
};

// The command line for a backup of the System State. The switches are joined with a blank at each end of
// each of them, so that two stand between and one at the end.
std::string NtbackupCommandLine(std::string_view backup_file, std::string_view job_name,
                                const NtbackupChoices& choices = {});

}  // namespace ondura
