#include "engines/restic/ResticBackup.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "engines/restic/exclude_patterns.h"
#include "engines/restic/restic_errors.h"
#include "text/text.h"

namespace ondura::engines {

namespace {

// With more patterns than these every file costs more than a walk of our own.
constexpr std::size_t kMostPatterns = 200;

constexpr std::string_view kSkippedSuffix = " does not exist, skipping";

// A path in the form that list and reports have in common. The machine shows a byte that is no UTF-8 as a
// private character, restic's messages as U+FFFD.
std::uint64_t DigestOf(std::string_view path) {
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  std::string plain;
  for (std::size_t at = 0; at < path.size(); ++at) {
    // U+F080 to U+F0FF, in UTF-8.
    const bool is_raw_byte =
        path.substr(at).starts_with("\xEF\x82") || path.substr(at).starts_with("\xEF\x83");
    if (is_raw_byte && at + 2 < path.size()) {
      plain += kReplacement;
      at += 2;
    } else {
      plain += path[at];
    }
  }
  return std::hash<std::string>{}(ToLower(plain));
}

}  // namespace

ResticBackup::ResticBackup(Client& client, ResticProgram& program, SystemView& view,
                           const std::string& work_folder, TransferJournal& journal, StopRequests& stop)
    : client_(client),
      program_(program),
      view_(view),
      journal_(journal),
      stop_(stop),
      targets_path_(work_folder + "\\Targets"),
      exclusions_path_(work_folder + "\\Exclusions") {}

EngineResult ResticBackup::Run(const TransferRequest& request, const std::vector<std::string>& marks,
                               const std::string& parent, std::optional<std::uint64_t> space_left) {
  space_left_ = space_left;
  if (request.compare_list != nullptr && !part_count_) {
    notes_paths_ = true;
    part_count_ = request.compare_list->WaitForEnd([this] { return IsOver(); });
    if (!part_count_ && !IsOver()) {
      journal_.Say("The list of files from the job ended before its time; nothing is backed up.");
      return engine_results::kEndedAbnormally;
    }
  }
  // The job clears away the files of the last run right after it has started the engine, or ended the list.
  client_.machine().clock.Sleep(std::chrono::seconds{1});
  const std::vector<std::string> targets = Targets(request);
  if (IsOver()) return ResultOf({.how = ResticEnd::How::kStopped});
  if (targets.empty()) return journal_.ResultOfRun();
  const bool walks = NeedsWalk(request.selection);
  if (!WriteTargets(targets) || !(walks || WriteExclusions(request.selection))) {
    journal_.Say("The lists for the transfer can't be written beside the user's files: is the disk full?");
    return engine_results::kEndedAbnormally;
  }
  std::vector<std::string> arguments{"backup", "--json", "-v"};
  arguments.insert(arguments.end(), marks.begin(), marks.end());
  arguments.insert(arguments.end(), {"--tag", "kind:" + std::string{request.stage_data.KindWord()}});
  if (!parent.empty()) arguments.insert(arguments.end(), {"--parent", parent});
  const auto system_path = [&](const std::string& path) {
    return client_.machine().processes.SystemPath(path);
  };
  if (!walks) arguments.insert(arguments.end(), {"--iexclude-file", system_path(exclusions_path_)});
  arguments.insert(arguments.end(), {"--files-from-raw", system_path(targets_path_)});
  const ResticEnd end = program_.Do({.arguments = std::move(arguments),
                                     .take_line = [this](const PipedLine& line) { Take(line); },
                                     .is_over = [this] { return IsOver(); }});
  if (!snapshot_id_.empty() && part_count_ && !HoldAgainst(*request.compare_list, *part_count_)) {
    journal_.Say("A part of the list of files from the job is missing; what it named may not be saved.");
    return engine_results::kEndedAbnormally;
  }
  return ResultOf(end);
}

bool ResticBackup::NeedsWalk(const Selection& selection) {
  return selection.IsByEnding() || selection.Exclusions().size() > kMostPatterns;
}

std::vector<std::string> ResticBackup::Targets(const TransferRequest& request) {
  std::vector<std::string> targets;
  if (NeedsWalk(request.selection)) {
    AddWalked(request, targets);
  } else {
    for (const std::string& item : request.selection.items()) AddItem(request, item, targets);
  }
  if (!request.stage_data.IsEmpty())
    AddTarget(std::string{WithoutLast(request.stage_data.folder())}, targets);
  return targets;
}

void ResticBackup::AddItem(const TransferRequest& request, const std::string& item,
                           std::vector<std::string>& targets) {
  if (request.selection.IsExcluded(item)) {
    journal_.MeetExclusion();
    return;
  }
  if (!view_.TargetOf(item).empty()) {
    AddTarget(item, targets);
    return;
  }
  // A drive, of which each entry is one.
  const bool listed = client_.machine().folders.List(WithBackslash(item), [&](const FolderEntry& entry) {
    const std::string path = WithBackslash(item) + std::string{entry.name};
    if (request.selection.IsExcluded(path)) {
      journal_.MeetExclusion();
    } else {
      targets.push_back(view_.TargetOf(path));
    }
    return Visit::kContinue;
  });
  if (!listed) Fail(item, "it is not there or can't be read");
}

void ResticBackup::AddTarget(const std::string& path, std::vector<std::string>& targets) {
  const Machine& machine = client_.machine();
  if (!machine.folders.Exists(path) && !machine.files.Exists(path)) {
    Fail(path, "it is not there or can't be read");
  } else if (view_.IsLink(path)) {
    Fail(path, "it is a link; choose what it leads to");
  } else {
    targets.push_back(view_.TargetOf(path));
  }
}

void ResticBackup::AddWalked(const TransferRequest& request, std::vector<std::string>& targets) {
  const Selection::Outcome outcome = request.selection.Walk([this] { return IsOver(); });
  if (outcome.met_exclusion) journal_.MeetExclusion();
  for (const std::string& path : outcome.missing) Fail(path, {});
  for (const std::string& path : outcome.off_drive) {
    journal_.Say(path + "  is left out: it is a link that leads off its drive");
  }
  for (const Candidate& file : outcome.files) targets.push_back(view_.TargetOf(file.path));
}

bool ResticBackup::WriteTargets(const std::vector<std::string>& targets) {
  std::string text;
  for (const std::string& target : targets) text.append(target).push_back('\0');
  return client_.machine().files.Write(targets_path_, text, IfPresent::kReplace);
}

bool ResticBackup::WriteExclusions(const Selection& selection) {
  std::string text;
  for (const std::string& path : selection.Exclusions()) {
    const std::string line = ExcludeLine(view_.FullPathOf(path), view_.EscapesByBackslash());
    if (line.empty()) {
      journal_.Say(path + "  can't be left out: its name has a line break");
    } else {
      text.append(line).append("\n");
    }
    if (std::ranges::any_of(selection.items(),
                            [&](const std::string& item) { return StartsWithIgnoringCase(path, item); })) {
      journal_.MeetExclusion();
    }
  }
  return client_.machine().files.Write(exclusions_path_, text, IfPresent::kReplace);
}

void ResticBackup::Take(const PipedLine& line) {
  if (const auto message = ParseResticMessage(line.text)) {
    std::visit([this](const auto& known) { Take(known); }, *message);
  } else if (line.text.ends_with(kSkippedSuffix)) {
    Fail(view_.MachinePath(line.text.substr(0, line.text.size() - kSkippedSuffix.size())), "it is not there");
  } else if (line.text.find("no matching ID found") != std::string::npos) {
    parent_is_gone_ = true;
  }
}

void ResticBackup::Take(const ResticStatus& status) {
  has_begun_ = true;
  journal_.ShowRun(status.current_file.empty() ? "" : view_.MachinePath(status.current_file),
                   {status.files_done, status.bytes_done}, {status.total_files, status.total_bytes});
}

void ResticBackup::Take(const ResticItem& item) {
  added_bytes_ += item.added_bytes;
  if (space_left_ && added_bytes_ > *space_left_) is_full_ = true;
  if (item.item.ends_with('/')) return;
  const std::string path = view_.MachinePath(item.item);
  if (notes_paths_) seen_.push_back(DigestOf(path));
  journal_.Consider();
  if (item.action == ResticItem::Action::kUnchanged) {
    journal_.InSync(path);
    return;
  }
  journal_.Sent(path, client_.machine().files.Size(path).value_or(0));
  journal_.Changed(path);
}

// What can't be read is reported by the scan and by the backup itself.
void ResticBackup::Take(const ResticError& error) { Fail(view_.MachinePath(error.item), {}); }

void ResticBackup::Fail(const std::string& path, std::string_view reason) {
  if (failed_.insert(path).second) journal_.Failed(path, reason);
}

bool ResticBackup::IsOver() { return is_full_ || stop_.Check() != StopRequest::kNone; }

bool ResticBackup::HoldAgainst(CompareList& list, int part_count) {
  std::ranges::sort(seen_);
  return list.ForEach(part_count, [&](const Candidate& file) {
    if (!std::ranges::binary_search(seen_, DigestOf(file.path))) {
      Fail(file.path, "it is in the list, but was not met");
    }
  });
}

EngineResult ResticBackup::ResultOf(const ResticEnd& end) {
  using namespace engine_results;
  if (snapshot_id_.empty()) journal_.Void();
  if (end.how == ResticEnd::How::kNotStarted) {
    journal_.Say("restic could not be started: install it, or add its folder to the search path.");
    return kDamagedInstallation;
  }
  if (!snapshot_id_.empty()) return journal_.ResultOfRun();
  if (is_full_) {
    journal_.Say("The allocated quota is used up.");
    return kQuotaUsedUp;
  }
  switch (stop_.Check()) {
    case StopRequest::kCancel:
      return kCancelled;
    case StopRequest::kHardStop:
      return kCancelledByServer;
    case StopRequest::kNone:
      break;
  }
  words_ = Trim(end.words);
  for (const std::string& line : LinesOf(words_)) journal_.Say("restic: " + line);
  const std::string holder = LockHolder(end.words);
  if (!holder.empty()) client_.transfer().Trf_WriteUserProfileDefault(profile_keys::kMultipleIp, holder);
  return ResultOfWords(end.words, end.exit_code,
                       has_begun_ ? ResticPhase::kTransferring : ResticPhase::kEntering, view_.HostName());
}

}  // namespace ondura::engines
