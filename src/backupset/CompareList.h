#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "backupset/Exclusions.h"
#include "backupset/MappedDrives.h"
#include "backupset/Selection.h"
#include "backupset/StampText.h"
#include "backupset/StopCheck.h"
#include "backupset/Utf16ListFile.h"
#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/Transfer.h"
#include "reporting/Trace.h"

namespace ondura {

enum class WalkOutcome { kDone, kStopped, kFailed };

// kBlocked: the backup set depends on a mapped drive, so that nothing is walked.
enum class BuildStart { kReady, kBlocked };

// Builds the compare list of the current user: every candidate file with its size and time stamps, in parts
// that the engine reads while they grow.
//
// A build is Begin, then WalkFixedDrives where there is an automatic selection or WalkItem for each item,
// then Finish. A walk that is stopped closes its files and returns at once, and so does one whose list can't
// be written: a list that lacks lines would pass for a selection without those files. Ending the job is the
// caller's.
class CompareList {
 public:
  static constexpr std::int64_t kLinesPerPart = 5'000'000;

  // `lines_per_part` lets a small list have several parts.
  CompareList(const Machine& machine, const Installation& installation, const Transfer& transfer,
              Exclusions& exclusions, MappedDrives& mapped_drives, StopCheck& stop, Trace& trace,
              std::int64_t lines_per_part = kLinesPerPart);

  // Removes what an earlier build left.
  void RemoveOldInput();

  // Also removes what an earlier build left, opens the first part and sets all counters anew.
  BuildStart Begin();

  // True when the user has an automatic selection; reads its file-name endings.
  bool HasAutomaticSelection();

  // Walks every fixed drive for the files with the endings read, or for all if there are none.
  WalkOutcome WalkFixedDrives();

  // A folder with all below it, or one file. What can't be read adds nothing but a line to the trace, for a
  // hundred of them. Asks for a stop after the item too.
  WalkOutcome WalkItem(const SelectedItem& item);

  // Closes the files and adds the run's size and count to TotalDisplaySize.txt.
  void Finish();

  // Closes the files of a build that is given up. What was written stays.
  void Close();

  // The list could not be opened or written to its end, which one line of the trace says.
  [[nodiscard]] bool failed() const { return failed_; }

  // The number of the present part, from 1 on.
  [[nodiscard]] std::int64_t parts() const { return part_; }
  // Files of the present part.
  [[nodiscard]] std::int64_t files() const { return files_; }
  // Paths too long for the server, and files whose time has no stamp.
  [[nodiscard]] std::int64_t skipped() const { return skipped_; }
  // Grows only while there are endings.
  [[nodiscard]] double size_bytes() const { return size_bytes_; }

 private:
  struct Folder {
    std::string path;
    FolderKey key;
  };
  struct FileEntry {
    std::string_view name;
    std::uint64_t size_bytes = 0;
    LocalTime modified;
  };

  WalkOutcome WalkTree(const std::string& root);
  WalkOutcome ScanFolderForCompareList(const Folder& folder);
  void WalkFile(std::string_view path);
  void EnterFolder(std::string_view folder_text);
  void TakeSubfolder(const Folder& folder, std::string_view name);
  void TakeFile(const Folder& folder, const FileEntry& file);
  void AddFile(const FileEntry& file);
  void WriteLine(const FileEntry& file);
  void AddSkipped(std::u16string_view path);
  void StartNextPart();
  bool EndsAsWanted(std::string_view name) const;
  bool MustStop();
  void NoteLeftOut(std::string_view reason, std::string_view path);
  void CheckList();
  void OpenPart();

  Machine machine_;
  const Installation& installation_;
  const Transfer& transfer_;
  Exclusions& exclusions_;
  MappedDrives& mapped_drives_;
  StopCheck& stop_;
  Trace& trace_;
  const std::int64_t lines_per_part_;
  TotalDisplaySize total_;
  TextFiles text_files_;
  StampText stamps_;
  Utf16ListFile list_;
  Utf16ListFile skipped_list_;
  std::vector<std::string> endings_;
  std::deque<Folder> queue_;
  std::u16string line_folder_;  // the folder text of the lines being written
  std::int64_t part_ = 1;
  std::int64_t files_ = 0;
  std::int64_t skipped_ = 0;
  int left_out_ = 0;
  bool failed_ = false;
  double size_bytes_ = 0;
};

}  // namespace ondura
