#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "backupset/ExclusionSizes.h"
#include "backupset/FolderWalk.h"
#include "backupset/Selection.h"
#include "backupset/StopCheck.h"
#include "platform/machine.h"
#include "profile/Installation.h"
#include "schedule/job_kind.h"
#include "util/FolderNames.h"
#include "util/TextFiles.h"

namespace ondura {

// The job whose backup set is measured.
struct SizeJob {
  std::optional<JobKind> kind;  // with a stage its dumps are the whole backup set
  std::string_view base_path;   // the folder of the stage's dumps
};

// kStopped: a stop was asked for and no output was written; ending the job is the caller's.
enum class SizeOutcome { kDone, kStopped };

// How many bytes and files the backup set of the current user holds, for display: TotalDisplaySize.txt with
// the totals and OutputSize.txt with each item and its size. What can't be read counts as 0.
class SizeCalculation {
 public:
  SizeCalculation(const Machine& machine, const Installation& installation, StopCheck& stop);

  // Takes as long as it takes to walk all items, with pauses; asks for a stop after each of them.
  SizeOutcome CalculateTotalSize(const SizeJob& job);

 private:
  struct AllDrives {
    double net_bytes = 0;  // without what is excluded
    double raw_bytes = 0;
    double files = 0;
  };

  void MeasureStage(std::string_view base_path);
  void AddLine(const std::string& line, FolderNames& names);
  void AddAllDrives();
  AllDrives SizeOfAllDrives();
  void AddDrive(const std::string& line);
  void AddFolder(const std::string& line);
  void AddFile(const std::string& line);
  void AddItem(const std::string& line, const DisplaySize& item, ExclusionKind kind);
  void AddOutput(std::string_view line, double size_bytes);
  bool IsFolderLine(std::string_view line, FolderNames& names);
  void WriteOutput();

  Machine machine_;
  const Installation& installation_;
  StopCheck& stop_;
  TextFiles text_files_;
  TotalDisplaySize total_file_;
  FolderWalk walk_;
  ExclusionSizes exclusions_;
  std::string output_;  // two lines an item: as selected, and its size
  DisplaySize totals_;
};

}  // namespace ondura
