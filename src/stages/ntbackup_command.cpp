#include "stages/ntbackup_command.h"

namespace ondura {

namespace {

std::string_view LogSwitch(NtbackupLog log) {
  switch (log) {
    case NtbackupLog::kFull:
      return " /L:f ";
    case NtbackupLog::kNone:
      return " /L:n ";
    case NtbackupLog::kSummary:
      break;
  }
  return " /L:s ";
}

std::string Quoted(std::string_view text) { return '"' + std::string{text} + '"'; }

}  // namespace

std::string NtbackupCommandLine(std::string_view backup_file, std::string_view job_name,
                                const NtbackupChoices& choices) {
  std::string line = "NTBACKUP backup systemstate";
  line.append(" /f ").append(Quoted(backup_file)).append(" /J ").append(Quoted(job_name));
  line.append(choices.verify ? " /V:yes " : " /V:no ").append(LogSwitch(choices.log));
  line.append(choices.restricted_access ? " /R:yes " : " /R:no ");
  return line.append(choices.remote_storage ? " /RS:yes " : " /RS:no ");
}

}  // namespace ondura
