#include "reporting/Progress.h"

#include <array>

#include "profile/Transfer.h"
#include "text/text.h"

namespace ondura {

namespace {

struct RestValue {
  std::string_view section;
  std::string_view key;
  std::string_view value;
};

constexpr std::string_view kWindow = "ProgWnd";
constexpr std::string_view kRestore = "RestoreProgressInfo";

// The file at rest, in the order in which it is written. Most keys of the restore section end in a blank.
constexpr std::array kAtRest{
    RestValue{kWindow, "VALUE", "0"},
    RestValue{kWindow, "Job", ""},
    RestValue{kBackupProgressSection, "BackupInProgress", "0"},
    RestValue{kBackupProgressSection, "Percentage", ""},
    RestValue{kBackupProgressSection, "FileName", ""},
    RestValue{kBackupProgressSection, "Backedup Files", ""},
    RestValue{kBackupProgressSection, "Total Progress", ""},
    RestValue{kBackupProgressSection, "Time Elapsed", ""},
    RestValue{kBackupProgressSection, "Est Time", ""},
    RestValue{kBackupProgressSection, "Tans Rate", ""},
    RestValue{kBackupProgressSection, "FilePath", ""},
    RestValue{kBackupProgressSection, "FilePer", ""},
    RestValue{kBackupProgressSection, "FilePath Dual", ""},
    RestValue{kBackupProgressSection, "FilePer Dual", ""},
    RestValue{kRestore, "RestoreInProgress ", "0"},
    RestValue{kRestore, "Percentage ", ""},
    RestValue{kRestore, "FileName ", ""},
    RestValue{kRestore, "Backedup Files ", ""},
    RestValue{kRestore, "Total Progress ", ""},
    RestValue{kRestore, "Time Elapsed ", ""},
    RestValue{kRestore, "Est Time ", ""},
    RestValue{kRestore, "Tans Rate ", ""},
    RestValue{kRestore, "FilePer ", ""},
    RestValue{kRestore, "FilePath Dual", ""},
    RestValue{kRestore, "FilePer Dual", ""},
};

struct SizeUnit {
  double bytes;
  std::string_view suffix;
};

constexpr std::array kUnits{
    SizeUnit{1073741824.0, " GB"},
    SizeUnit{1048576.0, " MB"},
    SizeUnit{1024.0, " KB"},
};

// The number's text, cut after the first decimal.
std::string OneDecimal(double number, std::string_view separator) {
  std::string text = NumberText(number);
  const auto point = text.find('.');
  if (point == std::string::npos) return text.append(separator).append("0");
  return text.substr(0, point).append(separator).append(text, point + 1, 1);
}

}  // namespace

void Progress::ResetBackupProgressIni() {
  transfer_.Trf_WriteUserProfileDefault(profile_keys::kPaused, "0");
  for (const RestValue& rest : kAtRest) Write(rest.section, rest.key, rest.value);
}

bool Progress::EndProgress() {
  progress_running_ = false;
  progress_ended_ = true;
  return true;
}

void Progress::WriteTransferOver() {
  Write(kWindow, "VALUE", "0");
  Write(kBackupProgressSection, "BackupInProgress", "0");
}

void Progress::WriteWindowStatusReset() { Write(kWindow, "Status", "0"); }

std::string Progress::GetProperSizeValue(double nBytes) {
  const std::string_view separator = machine_.locale.Text(kLocaleDecimal) == "," ? "," : ".";
  for (const SizeUnit& unit : kUnits) {
    if (nBytes > unit.bytes) return OneDecimal(nBytes / unit.bytes, separator).append(unit.suffix);
  }
  // A value of exactly one kilobyte is neither more nor less than that, and falls through.
  if (nBytes < kUnits.back().bytes) return OneDecimal(nBytes, separator).append(" B");
  return OneDecimal(0, separator);
}

void Progress::Write(std::string_view section, std::string_view key, std::string_view value) {
  const std::string file = installation_.UserFile(kBackupProgressFile);
  machine_.profiles.WriteString({.file = file, .section = section, .key = key}, value);
}

}  // namespace ondura
