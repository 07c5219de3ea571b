#include "backupset/SizeCalculation.h"

#include "backupset/drive_sizes.h"
#include "engine/engine_files.h"
#include "text/text.h"
#include "text/utf16.h"

namespace ondura {

namespace {

constexpr std::string_view kOutput = "OutputSize.txt";
constexpr std::string_view kAllDrives = "My Computer";
constexpr std::string_view kWithoutSize = "Root\\";
constexpr std::string_view kFloppy = "A:";

constexpr std::chrono::milliseconds kPause{1};
constexpr std::size_t kLinesBetweenPauses = 11;
constexpr std::size_t kDriveUnits = 2;  // "C:"
constexpr std::size_t kRootUnits = 3;   // "C:\"

}  // namespace

SizeCalculation::SizeCalculation(const Machine& machine, const Installation& installation, StopCheck& stop)
    : machine_(machine),
      installation_(installation),
      stop_(stop),
      text_files_(machine.files, machine.code_page),
      total_file_(machine, installation),
      walk_(machine),
      exclusions_(machine, installation, walk_) {}

SizeOutcome SizeCalculation::CalculateTotalSize(const SizeJob& job) {
  if (job.kind && job.kind != JobKind::kFiles) {
    MeasureStage(job.base_path);
    return SizeOutcome::kDone;
  }
  exclusions_.Load();
  totals_ = {};
  output_.clear();
  const auto lines =
      text_files_.ReadLines(installation_.UserFile(engine_files::kSelectionList), Encoding::kUtf16)
          .value_or(std::vector<std::string>{});
  FolderNames names{machine_};
  for (std::size_t done = 0; done < lines.size();) {
    AddLine(lines[done++], names);
    if (done % kLinesBetweenPauses == 0) machine_.clock.Sleep(kPause);
    if (stop_.Stopped()) return SizeOutcome::kStopped;
  }
  WriteOutput();
  return SizeOutcome::kDone;
}

void SizeCalculation::MeasureStage(std::string_view base_path) {
  total_file_.Recreate();
  const FolderTotals totals = walk_.Measure(base_path);
  total_file_.Write({totals.size_bytes, totals.files});
}

void SizeCalculation::AddLine(const std::string& line, FolderNames& names) {
  if (line == kAllDrives) {
    AddAllDrives();
  } else if (line.empty()) {
    AddOutput(line, 0);
  } else if (!IsFolderLine(line, names)) {
    AddFile(line);
  } else if (Utf16Length(line) <= kRootUnits) {
    AddDrive(line);
  } else {
    AddFolder(line);
  }
}

bool SizeCalculation::IsFolderLine(std::string_view line, FolderNames& names) {
  return line.ends_with('\\') || Utf16Length(line) == kDriveUnits || names.IsFolderPath(line);
}

void SizeCalculation::AddAllDrives() {
  const AllDrives drives = SizeOfAllDrives();
  AddOutput(kAllDrives, drives.raw_bytes);
  totals_.size_bytes += drives.net_bytes;
  totals_.files += drives.files;
}

SizeCalculation::AllDrives SizeCalculation::SizeOfAllDrives() {
  AllDrives drives;
  for (const std::string& root : machine_.drives.Roots()) {
    if (StartsWithIgnoringCase(root, kFloppy)) continue;
    const double used_bytes = UsedBytes(machine_, walk_, root);
    drives.raw_bytes += used_bytes;
    double files = walk_.Count(root).files;
    drives.net_bytes =
        exclusions_.SubtractExclusions(drives.net_bytes + used_bytes, root, files, ExclusionKind::kFolder);
    drives.files += files;
  }
  return drives;
}

void SizeCalculation::AddDrive(const std::string& line) {
  const double used_bytes = UsedBytes(machine_, walk_, line);
  AddItem(line, {used_bytes, walk_.Count(line).files}, ExclusionKind::kFolder);
}

void SizeCalculation::AddFolder(const std::string& line) {
  const std::string_view path = line.ends_with('\\') ? WithoutLast(line) : line;
  // A long path is out of reach for many calls, its short form is not.
  const std::string short_path = machine_.drives.ShortPath(path);
  const std::string_view folder = short_path.empty() ? path : short_path;
  // What the folder's own size and the walk for its count see is the same, so one walk brings both.
  const FolderTotals totals = walk_.Measure(folder);
  double size_bytes = totals.WholeSize();
  if (size_bytes <= 0) size_bytes = walk_.Measure(folder).size_bytes;
  AddItem(line, {size_bytes, totals.files}, ExclusionKind::kFolder);
}

void SizeCalculation::AddFile(const std::string& line) {
  if (line.starts_with(kWithoutSize)) return;
  const double size_bytes = static_cast<double>(machine_.files.Size(line).value_or(0));
  AddItem(line, {size_bytes, 1}, ExclusionKind::kFile);
}

void SizeCalculation::AddItem(const std::string& line, const DisplaySize& item, ExclusionKind kind) {
  AddOutput(line, item.size_bytes);
  double files = item.files;
  totals_.size_bytes =
      exclusions_.SubtractExclusions(totals_.size_bytes + item.size_bytes, line, files, kind);
  totals_.files += files;
}

void SizeCalculation::AddOutput(std::string_view line, double size_bytes) {
  output_.append(line).append(kLineEnd).append(NumberText(size_bytes)).append(kLineEnd);
}

void SizeCalculation::WriteOutput() {
  const std::string path = installation_.UserFile(kOutput);
  machine_.files.Remove(path, Removal::kForce);
  text_files_.Write(path, output_, Encoding::kUtf16);
  total_file_.Recreate();
  total_file_.Write(totals_);
}

}  // namespace ondura
