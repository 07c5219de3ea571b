#include "engines/check/CheckMachine.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

#include "engine/engine_files.h"
#include "engines/common/door.h"
#include "engines/common/door_client.h"
#include "engines/restic/StoreSettings.h"
#include "profile/ProductConfiguration.h"
#include "profile/profile_paths.h"
#include "schedule/schedule_record.h"
#include "text/text.h"
#include "util/date_text.h"

namespace ondura::check {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

std::string Listed(const std::set<std::string>& names) {
  constexpr std::size_t kMost = 6;
  std::string text;
  std::size_t count = 0;
  for (const std::string& name : names) {
    if (++count > kMost) return text + " ... (" + std::to_string(names.size()) + ")";
    text += (text.empty() ? "" : ", ") + name;
  }
  return text.empty() ? "nothing" : text;
}

}  // namespace

CheckMachine::CheckMachine(const CheckPlan& plan, const std::string& name)
    : root_((fs::path{plan.folder} / name).string()), ground_(MakeCheckGround(root_)) {
  installation_.ExeLocation = ground_.install;
  installation_.VirtualPath = ground_.data;
  installation_.ProductInstallationName = "Ondura";
  installation_.ProfileIniName = "\\Ondura.ini";
  installation_.ExeGroup = "Ondura";
  installation_.ClientExe = "OnduraClsClient.exe";
  installation_.CurrentUser = "ann";
  transfer_ = std::make_unique<Transfer>(machine(), installation_);
  text_files_ = std::make_unique<TextFiles>(machine().files, machine().code_page);
  machine().folders.Make(WithoutLast(UserFile("")));
  WriteProduct(plan);
  const fs::path program = HostPath(ground_.install + installation_.ClientExe);
  fs::copy_file(plan.engine, program);
  fs::permissions(program, fs::perms::owner_all);
  SetHeaderWord("1");
}

void CheckMachine::WriteProduct(const CheckPlan& plan) {
  const ProductConfiguration configuration(machine(), installation_);
  for (const auto& [key, value] :
       {std::pair{"ProductNumber", "3"}, std::pair{"ProductName", "Ondura"},
        std::pair{"ProductInstallationName", "Ondura"}, std::pair{"ExeGroup", "Ondura"}}) {
    machine().profiles.WriteString(
        {installation_.DataFile(kConfigurationFile), "ProductInfo", configuration.StoredForm(key)},
        configuration.StoredForm(value));
  }
  machine().profiles.WriteString(
      {InstallPointerPath(installation_), profile_keys::kDataFolder.section, profile_keys::kDataFolder},
      ground_.data);
  if (!plan.store.empty()) {
    SetEngine(engines::engine_settings::kStore, engines::engine_settings::kRepository,
              plan.store + "/" + fs::path(plan.folder).filename().string() + "-" +
                  fs::path(root_).filename().string() + "-{account}");
  }
  transfer_->Trf_WriteUserNameProfile(profile_keys::kScheduled, "ann");
  transfer_->Trf_WriteUserProfile(profile_keys::kUserName, "ann");
  transfer_->Trf_WriteUserProfile(profile_keys::kServerIp, "localhost");
  transfer_->Trf_WriteUserProfile(profile_keys::kPort, "11905");
  SetPasswords(kAccountPassword, kStorePassword);
  SetStatus(profile_keys::kRetValue, "0");
}

std::string CheckMachine::HostPath(std::string_view path) const {
  return machine().processes.SystemPath(path);
}

void CheckMachine::Put(const std::string& path, std::string_view bytes) {
  const fs::path host = HostPath(path);
  fs::create_directories(host.parent_path());
  std::ofstream(host, std::ios::binary) << bytes;
}

void CheckMachine::Remove(const std::string& path) { fs::remove_all(HostPath(path)); }

void CheckMachine::Select(const std::vector<std::string>& items) {
  text_files_->Write(UserFile(engine_files::kSelectionList), Join(items, kLineEnd) + std::string{kLineEnd},
                     Encoding::kUtf16);
}

void CheckMachine::Exclude(const std::vector<std::string>& folders, const std::vector<std::string>& files) {
  text_files_->Write(UserFile("atbkupExcludelist.txt"), Join(folders, kLineEnd) + std::string{kLineEnd},
                     Encoding::kUtf16);
  text_files_->Write(UserFile("atbkupExcludeFilePath.txt"), Join(files, kLineEnd) + std::string{kLineEnd},
                     Encoding::kUtf16);
}

void CheckMachine::SelectByEnding(const std::vector<std::string>& endings) {
  text_files_->Write(UserFile(engine_files::kAutomaticSelection),
                     "1" + std::string{kLineEnd} + Join(endings, kLineEnd) + std::string{kLineEnd},
                     Encoding::kCodePage);
}

void CheckMachine::UseList(bool uses) {
  transfer_->Trf_WriteUserNameDBProfile(profile_keys::kLocalDatabase, uses ? "0" : "1");
}

void CheckMachine::SetPasswords(std::string_view account, std::string_view encryption) {
  transfer_->Trf_WriteUserProfile(profile_keys::kPassword, account);
  transfer_->Trf_WriteUserProfile(profile_keys::kEncPassword, encryption);
}

void CheckMachine::SetStatus(const ProfileKey& key, std::string_view value) {
  transfer_->Trf_WriteUserProfileDefault(key, value);
}

void CheckMachine::SetProfile(const ProfileKey& key, std::string_view value) {
  transfer_->Trf_WriteUserProfile(key, value);
}

void CheckMachine::SetHeaderWord(std::string_view word) {
  machine().files.Write(UserFile(kScheduleFileName), std::string{word} + "\r\n", IfPresent::kReplace);
}

void CheckMachine::SetPace(int milliseconds_per_file, int upload_kib) {
  const std::string deployment = ground_.install + std::string{kDeploymentFile};
  machine().profiles.WriteString({deployment, "Demo", "MillisecondsPerFile"},
                                 std::to_string(milliseconds_per_file));
  SetEngine(engines::engine_settings::kLimits, engines::engine_settings::kUploadKib,
            std::to_string(upload_kib));
}

void CheckMachine::SetEngine(std::string_view section, std::string_view key, std::string_view value) {
  const std::string settings = ground_.install + std::string{engines::kEngineSettingsFile};
  machine().profiles.WriteString({settings, section, key}, value);
}

void CheckMachine::SetSpace(std::uint64_t bytes) {
  SetEngine(engines::engine_settings::kStore, engines::engine_settings::kMaxBytes, std::to_string(bytes));
  machine().profiles.WriteString({installation_.DataFile("Vault\\ann\\account.ini"), "Account", "Max"},
                                 std::to_string(bytes));
}

ProcessHandle CheckMachine::Start(const std::string& parameters) {
  const ProcessHandle engine =
      machine().processes.Launch({.file = installation_.ExeLocation + installation_.ClientExe,
                                  .parameters = parameters,
                                  .folder = installation_.WorkingFolder()});
  if (engine == kNoProcess) throw CheckFailed("the engine can't be started");
  return engine;
}

bool CheckMachine::WaitForEnd(ProcessHandle engine, std::chrono::seconds limit) {
  return machine().processes.Wait(engine, std::chrono::milliseconds{limit} * ground_.speed) ==
         ProcessWait::kEnded;
}

std::string CheckMachine::Run(const std::string& parameters, std::chrono::seconds limit) {
  const ProcessHandle engine = Start(parameters);
  if (!WaitForEnd(engine, limit)) {
    machine().processes.Terminate(engine, 1);
    throw CheckFailed("'" + parameters + "' did not end within " + std::to_string(limit.count()) + " s");
  }
  return Result();
}

std::string CheckMachine::Result() {
  return machine().profiles.ReadString(
      {UserProfilePath(installation_, "ann"), profile_keys::kRetValue.section, profile_keys::kRetValue});
}

void CheckMachine::WriteListPart(int number, const std::vector<std::string>& paths) {
  const std::string part = UserFile(engine_files::CompareListPart(number));
  machine().folders.Make(UserFile(engine_files::kCompareListFolder));
  text_files_->Write(part, "", Encoding::kUtf16);
  for (const std::string& path : paths) {
    const LocalTime time = machine().files.Modified(path).value_or(LocalTime{});
    std::string line = path + "/" + std::to_string(machine().files.Size(path).value_or(0));
    for (const LocalTime stamp : {time, time + 1h, time - 1h}) line += "/" + FormatDate(kStampPicture, stamp);
    text_files_->Append(part, line + std::string{kLineEnd}, Encoding::kUtf16, IfMissing::kCreate);
  }
}

std::string CheckMachine::RunWithList(const std::vector<std::vector<std::string>>& parts) {
  SetStatus(profile_keys::kCompareListCount, "0");
  SetStatus(profile_keys::kStatusCheckCount, "0");
  SetStatus(profile_keys::kRetValue, "0");
  const ProcessHandle engine = Start(EngineParameters(EngineCommand::kTransfer, "\\1"));
  Remove(UserFile(engine_files::kCompareListFolder));
  int number = 0;
  for (const auto& paths : parts) {
    WriteListPart(++number, paths);
    machine().clock.Sleep(2s);
    if (number < static_cast<int>(parts.size())) {
      SetStatus(profile_keys::kCompareListCount, "1");
      SetStatus(profile_keys::kStatusCheckCount, std::to_string(number));
    }
  }
  SetStatus(profile_keys::kCompareListCount, "0");
  SetStatus(profile_keys::kStatusCheckCount, std::to_string(number));
  if (!WaitForEnd(engine, 120s)) throw CheckFailed("the engine did not end after the end of the list");
  return Result();
}

std::set<std::string> CheckMachine::NamesIn(std::string_view name) {
  const auto lines = text_files_->ReadLines(UserFile(name), Encoding::kUtf16);
  if (!lines) throw CheckFailed("it left no " + std::string{name});
  return {lines->begin(), lines->end()};
}

std::string CheckMachine::NewestLog() {
  std::string newest;  // they are named after their time
  machine().folders.List(UserFile(kSessionFolder), [&](const FolderEntry& entry) {
    newest = std::max(newest, std::string{entry.name});
    return Visit::kContinue;
  });
  const std::string path = UserFile(kSessionFolder) + "\\" + newest;
  return newest.empty() ? "" : text_files_->Read(path, Encoding::kUtf16).value_or("");
}

std::string CheckMachine::Quota(const ProfileKey& key) {
  return machine().profiles.ReadString({UserProfilePath(installation_, "ann"), key.section, key});
}

std::vector<std::string> CheckMachine::PortLines() {
  return text_files_->ReadLines(UserFile(engine_files::kPortOutput), Encoding::kCodePage)
      .value_or(std::vector<std::string>{});
}

PipedRequest CheckMachine::RequestFor(std::string_view verb, const std::vector<std::string>& words) {
  PipedRequest request =
      engines::DoorRequest(HostPath(installation_.ExeLocation + installation_.ClientExe), verb, "ann", words);
  request.environment = ground_.environment;
  return request;
}

bool CheckMachine::Offers(std::string_view verb) {
  bool offers = false;
  engines::AskDoor(machine().processes, RequestFor(engines::door_verbs::kOffers, {}),
                   [&](const nlohmann::json& answer) {
                     for (const auto& name : answer.value("offers", nlohmann::json::array())) {
                       offers = offers || (name.is_string() && name.get<std::string>() == verb);
                     }
                   });
  return offers;
}

std::vector<nlohmann::json> CheckMachine::Ask(std::string_view verb, const std::vector<std::string>& words) {
  if (!Offers(verb)) throw NotOffered(std::string{verb});
  std::vector<nlohmann::json> answers;
  const auto end = engines::AskDoor(machine().processes, RequestFor(verb, words),
                                    [&](const nlohmann::json& answer) { answers.push_back(answer); });
  if (end.exit_code != 0) throw CheckFailed("'" + std::string{verb} + "' failed: " + end.error + end.words);
  return answers;
}

std::string CheckMachine::Restored(const std::string& path, const std::string& at) {
  const std::string to = NewFolder();
  std::vector<std::string> words{"--to", to};
  if (!at.empty()) words.insert(words.end(), {"--at", at});
  words.push_back(path);
  Ask(engines::door_verbs::kRestore, words);
  const std::string host = HostPath(path);
  const std::string drive = HostPath(path.substr(0, 3));
  return to + "/" + path.substr(0, 1) +
         host.substr(drive.size() - (drive.ends_with('/') || drive.ends_with('\\') ? 1 : 0));
}

std::string CheckMachine::StoreFolder() {
  for (const nlohmann::json& answer : Ask(engines::door_verbs::kStore)) {
    std::string location = answer.value("location", "");
    if (engines::IsMachinePath(location)) location = HostPath(WithoutLast(WithBackslash(location)));
    if (fs::path{location}.is_absolute()) return location;
  }
  throw NotOffered("a store in a folder");
}

void Expect(const std::string& what, const std::string& wanted, const std::string& found) {
  if (wanted != found) throw CheckFailed(what + ": wanted '" + wanted + "', found '" + found + "'");
}

void ExpectNames(const std::string& what, const std::set<std::string>& wanted,
                 const std::set<std::string>& found) {
  if (wanted == found) return;
  std::set<std::string> missing;
  std::set<std::string> extra;
  std::ranges::set_difference(wanted, found, std::inserter(missing, missing.end()));
  std::ranges::set_difference(found, wanted, std::inserter(extra, extra.end()));
  throw CheckFailed(what + ": missing " + Listed(missing) + "; not wanted " + Listed(extra));
}

void Require(bool holds, const std::string& what) {
  if (!holds) throw CheckFailed(what);
}

}  // namespace ondura::check
