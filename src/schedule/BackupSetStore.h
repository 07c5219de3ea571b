#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "reporting/Trace.h"

namespace ondura {

// The bare name of the list of what a job is to back up.
inline constexpr std::string_view kBackupSetFileName = "BackupSetData.txt";

// The backup-set file: text in the system code page, one item a line.
class BackupSetStore {
 public:
  BackupSetStore(const Machine& machine, const Installation& installation, Trace& trace)
      : machine_(machine), installation_(installation), trace_(trace) {}

  // The current user's file, set at start-up and on each pass.
  std::string BackupSetFilePath;

  // The lines last read, in file order. The stages change it.
  std::vector<std::string> BackupSetLines;

  // Reads BackupSetFilePath into BackupSetLines and copies the file into the data folder, where the
  // elevated helpers look for it. A missing file leaves the lines empty and the old copy in place.
  void DB_ReadBackdata();

  // Reads the file at `path` into `lines`, replacing them; a missing file leaves them empty. The lines after
  // the first million are left out, which the user's trace says.
  void DB_ReadBackdataNew(std::string_view path, std::vector<std::string>& lines);

  static void ClearCollection(std::vector<std::string>& lines) { lines.clear(); }

 private:
  Machine machine_;
  const Installation& installation_;
  Trace& trace_;
};

}  // namespace ondura
