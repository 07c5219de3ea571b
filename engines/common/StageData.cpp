#include "engines/common/StageData.h"

#include <algorithm>

#include "schedule/schedule_record.h"
#include "text/text.h"

namespace ondura::engines {

StageData::StageData(Client& client) : client_(client) {
  const std::string folder = Folder();
  if (!Trim(folder).empty()) root_ = WithBackslash(folder);
}

std::vector<Candidate> StageData::Files() {
  std::vector<Candidate> files;
  if (root_.empty()) return files;
  std::vector<std::string> folders{root_};
  for (std::size_t at = 0; at < folders.size(); ++at) {
    const std::string folder = folders[at];
    client_.machine().folders.List(folder, [&](const FolderEntry& entry) {
      std::string path = folder + std::string{entry.name};
      if (entry.is_folder) {
        folders.push_back(path + "\\");
      } else {
        files.push_back({std::move(path), entry.size_bytes, entry.modified, entry.modified, entry.modified});
      }
      return Visit::kContinue;
    });
  }
  return files;
}

std::optional<JobKind> StageData::Kind() const {
  const std::string schedule_file = client_.installation().UserFile(kScheduleFileName);
  return JobKindOf(client_.machine().files.ReadHead(schedule_file, 1).value_or(""));
}

std::string_view StageData::KindWord() const {
  const auto row = std::ranges::find(kJobKinds, Kind().value_or(JobKind::kFiles), &JobKindRow::kind);
  return row->word;
}

std::string StageData::Folder() const {
  const auto kind = Kind();
  if (!kind) return "";
  switch (*kind) {
    case JobKind::kFiles:
      break;
    case JobKind::kSqlServer:
      return client_.transfer().Trf_ReadUserProfile(profile_keys::kSqlTemp);
    case JobKind::kSystemState:
      return SystemStateFolder();
    case JobKind::kExchangeStore:
      return client_.transfer().Trf_ReadUserProfile(profile_keys::kApiExchange);
    case JobKind::kExchangeBrick:
      return WithBackslash(client_.transfer().Trf_ReadUserProfile(profile_keys::kExchBrick)) +
             "OxExchBrickBkset";
  }
  return "";
}

// The last field of the System State's line in the backup set.
std::string StageData::SystemStateFolder() const {
  constexpr std::string_view kKeyword = "OXSYSTEMSTATEBACKUP";
  std::string folder;
  const auto lines = client_.text_files().ReadLines(client_.installation().UserFile("BackupSetData.txt"),
                                                    Encoding::kCodePage);
  for (const std::string& line : lines.value_or(std::vector<std::string>{})) {
    if (!StartsWithIgnoringCase(line, kKeyword)) continue;
    folder.clear();
    for (const std::string& field : Split(line, ";")) {
      const std::string_view text = Trim(field);
      if (!text.empty() && !EqualsIgnoringCase(text, kKeyword)) folder = text;
    }
  }
  return folder.empty() || folder == "\\" ? client_.installation().DataFile("SYSSTATETEMP") : folder;
}

}  // namespace ondura::engines
