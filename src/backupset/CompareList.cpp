#include "backupset/CompareList.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "engine/engine_files.h"
#include "profile/profile_paths.h"
#include "text/separators.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr std::string_view kOldInput = "CompareListInput.txt";

constexpr std::size_t kLongestPathUnits = 256;
constexpr std::size_t kLongestNumber = 20;
constexpr std::size_t kUnitsBesidePath = kLongestNumber + 3 * StampText::kUnits + 6;

// A tree that nobody may read would fill the trace.
constexpr int kMostLeftOut = 100;

constexpr std::chrono::milliseconds kPartPause{2000};
constexpr std::chrono::milliseconds kFirstFilePause{1};
constexpr std::chrono::hours kShift{1};

char16_t* WriteNumber(std::uint64_t number, char16_t* into) {
  std::array<char, kLongestNumber> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return std::copy(digits.data(), end, into);
}

char16_t* WriteLineEnd(char16_t* into) {
  *into++ = u'\r';
  *into++ = u'\n';
  return into;
}

}  // namespace

CompareList::CompareList(const Machine& machine, const Installation& installation, const Transfer& transfer,
                         Exclusions& exclusions, MappedDrives& mapped_drives, StopCheck& stop, Trace& trace,
                         std::int64_t lines_per_part)
    : machine_(machine),
      installation_(installation),
      transfer_(transfer),
      exclusions_(exclusions),
      mapped_drives_(mapped_drives),
      stop_(stop),
      trace_(trace),
      lines_per_part_(lines_per_part),
      total_(machine, installation),
      text_files_(machine.files, machine.code_page),
      list_(machine),
      skipped_list_(machine) {}

void CompareList::RemoveOldInput() {
  machine_.files.Remove(installation_.UserFile(kOldInput), Removal::kForce);
  machine_.folders.Remove(installation_.UserFile(engine_files::kCompareListFolder), Removal::kForce);
}

BuildStart CompareList::Begin() {
  RemoveOldInput();
  machine_.folders.Make(installation_.UserFile(engine_files::kCompareListFolder));
  stamps_.SetMode(PresentDateMode(machine_.locale, machine_.clock.Now()));
  part_ = 1;
  files_ = skipped_ = 0;
  size_bytes_ = 0;
  left_out_ = 0;
  failed_ = false;
  endings_.clear();
  // A job that ends early leaves it, and this one skips its own files only.
  machine_.files.Remove(installation_.UserFile(kSkippedFilesFile), Removal::kForce);
  skipped_list_.Open(installation_.UserFile(kSkippedFilesFile));
  OpenPart();
  if (!mapped_drives_.CheckServiceModeMappedDrive()) return BuildStart::kReady;
  Close();
  return BuildStart::kBlocked;
}

bool CompareList::HasAutomaticSelection() {
  const std::string path = installation_.UserFile(engine_files::kAutomaticSelection);
  if (!machine_.files.Exists(path)) return false;
  endings_ = text_files_.ReadLines(path, Encoding::kCodePage).value_or(std::vector<std::string>{});
  // The first line is a flag for the user interface.
  if (!endings_.empty()) endings_.erase(endings_.begin());
  return true;
}

WalkOutcome CompareList::WalkFixedDrives() {
  for (const std::string& root : machine_.drives.Roots()) {
    if (machine_.drives.KindOf(root) != DriveKind::kFixed) continue;
    const WalkOutcome outcome = WalkTree(ToUpper(root.substr(0, 2)));
    if (outcome != WalkOutcome::kDone) return outcome;
  }
  return WalkOutcome::kDone;
}

WalkOutcome CompareList::WalkItem(const SelectedItem& item) {
  if (item.kind == ItemKind::kFolder) return WalkTree(item.path);
  WalkFile(item.path);
  list_.KeepUp();
  CheckList();
  if (failed_) return WalkOutcome::kFailed;
  if (!MustStop()) return WalkOutcome::kDone;
  Close();
  return WalkOutcome::kStopped;
}

void CompareList::Finish() {
  Close();
  if (failed_) return;
  total_.Add({size_bytes_, static_cast<double>(files_)});
}

WalkOutcome CompareList::WalkTree(const std::string& root) {
  queue_.clear();
  queue_.push_back({WithBackslash(root), {}});
  queue_.front().key = exclusions_.KeyOf(queue_.front().path);
  while (!queue_.empty()) {
    const Folder folder = std::move(queue_.front());
    queue_.pop_front();
    const WalkOutcome outcome = stop_.Stopped() ? WalkOutcome::kStopped : ScanFolderForCompareList(folder);
    if (outcome == WalkOutcome::kDone) continue;
    Close();
    return outcome;
  }
  return WalkOutcome::kDone;
}

WalkOutcome CompareList::ScanFolderForCompareList(const Folder& folder) {
  WalkOutcome outcome = WalkOutcome::kDone;
  EnterFolder(folder.path);
  const bool is_listed = machine_.folders.List(folder.path, [&](const FolderEntry& entry) {
    if (entry.is_folder) {
      TakeSubfolder(folder, entry.name);
    } else if (entry.leads_off_drive) {
      NoteLeftOut("it is a link that leads off its drive", folder.path + std::string{entry.name});
    } else {
      TakeFile(folder, {entry.name, entry.size_bytes, entry.modified});
    }
    list_.KeepUp();
    CheckList();
    if ((entry.is_folder || endings_.empty()) && MustStop()) outcome = WalkOutcome::kStopped;
    if (failed_) outcome = WalkOutcome::kFailed;
    return outcome == WalkOutcome::kDone ? Visit::kContinue : Visit::kStop;
  });
  if (!is_listed) NoteLeftOut("the folder can't be listed", folder.path);
  return outcome;
}

void CompareList::WalkFile(std::string_view path) {
  const std::string_view exclusion = exclusions_.FindExclusion(ExclusionKind::kFile, path);
  if (!exclusion.empty()) return exclusions_.AddAppliedExclusion(exclusion);
  const auto modified = machine_.files.Modified(path);
  if (!modified && !path.empty()) NoteLeftOut("the file can't be read", path);
  if (!modified) return;
  const std::size_t name_at = path.rfind('\\') + 1;
  EnterFolder(path.substr(0, name_at));
  AddFile({path.substr(name_at), machine_.files.Size(path).value_or(0), *modified});
}

void CompareList::EnterFolder(std::string_view folder_text) {
  const std::string trimmed = TrimSpaceFromPathOne(folder_text);
  line_folder_.resize(trimmed.size());
  const char16_t* end = WriteUtf16(trimmed, line_folder_.data());
  line_folder_.resize(static_cast<std::size_t>(end - line_folder_.data()));
}

void CompareList::TakeSubfolder(const Folder& folder, std::string_view name) {
  FolderKey key;
  const std::string_view exclusion = exclusions_.FindFolder(folder.path, folder.key, name, key);
  if (!exclusion.empty()) return exclusions_.AddAppliedExclusion(exclusion);
  std::string path;
  path.reserve(folder.path.size() + name.size() + 1);
  path.append(folder.path).append(name).append("\\");
  queue_.push_back({std::move(path), key});
}

void CompareList::TakeFile(const Folder& folder, const FileEntry& file) {
  const std::string_view exclusion = exclusions_.FindFile(folder.path, folder.key, file.name);
  if (!exclusion.empty()) return exclusions_.AddAppliedExclusion(exclusion);
  if (EndsAsWanted(file.name)) AddFile(file);
}

void CompareList::AddFile(const FileEntry& file) {
  if (files_ == lines_per_part_) StartNextPart();
  if (failed_) return;
  WriteLine(file);
  ++files_;
  if (endings_.empty()) return;
  size_bytes_ += static_cast<double>(file.size_bytes);
  if (files_ == 1) {
    machine_.clock.Sleep(kFirstFilePause);
    machine_.pump.Pump();
  }
}

void CompareList::WriteLine(const FileEntry& file) {
  char16_t* const line = list_.Reserve(line_folder_.size() + file.name.size() + kUnitsBesidePath);
  char16_t* at = std::copy(line_folder_.begin(), line_folder_.end(), line);
  at = WriteUtf16(file.name, at);
  const auto path_units = static_cast<std::size_t>(at - line);
  // A time outside the calendar has no stamp, and a file without a stamp no line.
  const bool has_stamp = StampText::IsStampable(file.modified);
  if (path_units > kLongestPathUnits || !has_stamp) AddSkipped({line, path_units});
  if (!has_stamp) return;
  *at++ = u'/';
  at = WriteNumber(file.size_bytes, at);
  for (const LocalTime stamp : {file.modified, file.modified + kShift, file.modified - kShift}) {
    *at++ = u'/';
    at = stamps_.Write(stamp, at);
  }
  list_.Commit(WriteLineEnd(at));
}

void CompareList::AddSkipped(std::u16string_view path) {
  char16_t* const line = skipped_list_.Reserve(path.size() + 2);
  skipped_list_.Commit(WriteLineEnd(std::copy(path.begin(), path.end(), line)));
  ++skipped_;
}

void CompareList::StartNextPart() {
  Close();
  if (failed_) return;
  transfer_.Trf_WriteUserProfileDefault(profile_keys::kStatusCheckCount, std::to_string(part_));
  transfer_.Trf_WriteUserProfileDefault(profile_keys::kCompareListCount, "1");
  // The size goes on growing, so that the displayed total counts a part more than once.
  if (!endings_.empty()) total_.Add({size_bytes_, static_cast<double>(files_)});
  files_ = 0;
  machine_.clock.Sleep(kPartPause);
  ++part_;
  skipped_list_.Open(installation_.UserFile(kSkippedFilesFile));
  OpenPart();
}

bool CompareList::EndsAsWanted(std::string_view name) const {
  return endings_.empty() || std::any_of(endings_.begin(), endings_.end(),
                                         [&](const auto& ending) { return name.ends_with(ending); });
}

bool CompareList::MustStop() {
  machine_.pump.Pump();
  return stop_.Stopped();
}

void CompareList::OpenPart() {
  list_.Open(installation_.UserFile(engine_files::CompareListPart(part_)));
  CheckList();
}

void CompareList::Close() {
  list_.Close();
  CheckList();
  skipped_list_.Close();
}

void CompareList::NoteLeftOut(std::string_view reason, std::string_view path) {
  if (++left_out_ > kMostLeftOut) return;
  trace_.User("  Left out, because " + std::string{reason} + " : " + std::string{path});
}

void CompareList::CheckList() {
  if (failed_ || !list_.failed()) return;
  failed_ = true;
  trace_.User("  The compare list can't be written. Free some space and look at the rights of : " +
              installation_.UserFile(engine_files::kCompareListFolder));
}

}  // namespace ondura
