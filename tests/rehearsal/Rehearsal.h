#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "machines/posix/PosixMachine.h"
#include "profile/Installation.h"
#include "profile/LightCiphers.h"
#include "profile/ProductConfiguration.h"
#include "profile/Transfer.h"
#include "schedule/schedule_record.h"
#include "text/text.h"
#include "util/TextFiles.h"
#include "util/date_text.h"

namespace ondura::rehearsal {

inline constexpr std::string_view kInstall = "C:\\Program Files\\Ondura\\";
inline constexpr std::string_view kData = "C:\\ProgramData\\Ondura\\";
inline constexpr std::string_view kEngine = "OnduraClsClient.exe";

// A machine in a folder of its own with the client's programs and one user, ann, whose job is running.
class Rehearsal {
 public:
  Rehearsal() {
    installation_.ExeLocation = kInstall;
    installation_.VirtualPath = kData;
    installation_.ProductInstallationName = "Ondura";
    installation_.CurrentUser = "ann";
    installation_.ProfileIniName = "\\Ondura.ini";
    MakeFolder(kInstall);
    MakeFolder(installation_.UserFolder());
    Install(REHEARSAL_ENGINE, kEngine);
    WriteConfiguration();
    WriteAccount();
  }
  ~Rehearsal() { std::filesystem::remove_all(root_); }
  Rehearsal(const Rehearsal&) = delete;
  Rehearsal& operator=(const Rehearsal&) = delete;

  // The machine's folder on the host.
  const std::string& HostRoot() const { return root_; }
  const Machine& machine() { return owner_->machine(); }
  const Installation& installation() const { return installation_; }
  Transfer& transfer() { return transfer_; }
  std::string UserFile(std::string_view name) const { return installation_.UserFile(name); }
  static std::string VaultFile(std::string_view name) {
    return std::string{kData} + "Vault\\ann\\" + std::string{name};
  }

  void Install(const char* program, std::string_view name) {
    std::filesystem::copy_file(program, root_ + "/C/Program Files/Ondura/" + std::string{name});
  }

  // A program of the data folder, where the tools lie that dump application data.
  void InstallInData(const char* program, std::string_view name) {
    std::filesystem::copy_file(program, root_ + "/C/ProgramData/Ondura/" + std::string{name});
  }

  void Configure(std::string_view key, std::string_view value) {
    ProductConfiguration configuration(machine(), installation_);
    machine().profiles.WriteString(
        {installation_.DataFile("Configuration.ini"), "ProductInfo", configuration.StoredForm(key)},
        configuration.StoredForm(value));
  }

  // A file of the host in the machine's folder.
  void PutHostFile(const char* name, std::string_view text) {
    std::ofstream(root_ + "/" + name, std::ios::binary) << text;
  }

  void MakeFolder(std::string_view path) {
    std::string host = ReplaceAll(path, "\\", "/");
    host.erase(1, 1);
    std::filesystem::create_directories(root_ + "/" + host);
  }

  void PutFile(const std::string& path, std::string_view bytes) {
    MakeFolder(path.substr(0, path.rfind('\\')));
    ASSERT_TRUE(machine().files.Write(path, bytes, IfPresent::kReplace)) << path;
  }

  void PutLines(std::string_view name, const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text.append(line).append(kLineEnd);
    ASSERT_TRUE(text_files().Write(UserFile(name), text, Encoding::kUtf16));
  }

  std::vector<std::string> Lines(std::string_view name) {
    return text_files()
        .ReadLines(UserFile(name), Encoding::kUtf16)
        .value_or(std::vector<std::string>{"<missing>"});
  }

  // Of all session logs.
  std::vector<std::string> SessionLines() {
    std::vector<std::string> all;
    machine().folders.List(UserFile("Session"), [&](const FolderEntry& entry) {
      for (const std::string& line : Lines("Session\\" + std::string{entry.name})) all.push_back(line);
      return Visit::kContinue;
    });
    return all;
  }

  std::string Read(const std::string& path) { return machine().files.Read(path).value_or("<missing>"); }

  std::string ProfileValue(std::string_view section, std::string_view key) {
    return machine().profiles.ReadString({UserFile("Ondura.ini"), section, key});
  }
  std::string Result() { return ProfileValue("BackupStatus", "RetValue"); }
  void SetStatus(std::string_view key, std::string_view value) {
    transfer_.Trf_WriteUserProfileDefault("BackupStatus", key, value);
  }

  ProcessHandle Start(std::string_view parameters, std::string_view program = kEngine) {
    return machine().processes.Launch({.file = std::string{kInstall} + std::string{program},
                                       .parameters = std::string{parameters},
                                       .folder = installation_.WorkingFolder()});
  }

  // The exit code; a program that has not ended after half a minute is ended and fails the test.
  std::uint32_t Finish(ProcessHandle handle) {
    const bool ended =
        machine().processes.Wait(handle, std::chrono::milliseconds{30'000 * 100}) == ProcessWait::kEnded;
    EXPECT_TRUE(ended);
    if (!ended) machine().processes.Terminate(handle, 1);
    return machine().processes.ExitCode(handle).value_or(kStillActive);
  }

  std::string Run(std::string_view parameters) {
    EXPECT_EQ(Finish(Start(parameters)), 0U);
    return Result();
  }

 private:
  static std::string MakeRoot() {
    std::string root = (std::filesystem::temp_directory_path() / "ondura-demo-XXXXXX").string();
    if (mkdtemp(root.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return root;
  }

  TextFiles text_files() { return {machine().files, machine().code_page}; }

  void WriteConfiguration() {
    Configure("ProductNumber", "3");
    Configure("ProductName", "Ondura");
    Configure("ProductInstallationName", "Ondura");
    Configure("ExeGroup", "Ondura");
    machine().profiles.WriteString({std::string{kInstall} + "UserName.ini", "Registry", "VirtualPath"},
                                   kData);
  }

  void WriteAccount() {
    transfer_.Trf_WriteUserNameProfile("Scheduled", "ann");
    transfer_.Trf_WriteUserProfile("username", "ann");
    transfer_.Trf_WriteUserProfile("password", "swordfish");
    transfer_.Trf_WriteUserProfile("encpassword", "rosebud");
    transfer_.Trf_WriteUserProfile("serverip", "localhost");
    SetStatus("RetValue", "0");
  }

  std::string root_ = MakeRoot();
  std::unique_ptr<PosixMachine> owner_ = MakePosixMachine({.root = root_, .speed = 100, .pump = {}}).owner;
  Installation installation_;
  Transfer transfer_{owner_->machine(), installation_};
};

// A rehearsal whose user has one small file to back up and a record for the hosts to find.
class JobRehearsal : public Rehearsal {
 public:
  JobRehearsal() {
    PutFile("C:\\Docs\\a.txt", "hello");
    PutLines("atbkupfolderlist.txt", {"C:\\Docs\\"});
    PutFile(std::string{kData} + "userlist.ini", "ann;\r\n");
    transfer().Trf_WriteUserProfile("port", "11905");
    transfer().Trf_WriteUserProfile("STARTMISSEDSCH", "1");
    transfer().Trf_WriteUserNameDBProfile("DB", "0");
    transfer().Trf_WriteUserNameProfile("Standard", "0");
    transfer().Trf_WriteUserNameProfile("Started", "0");
    LightCiphers ciphers(machine().code_page, machine().pump);
    transfer().Trf_WriteUserNameRegistryProfile("Default User name", ciphers.ShiftEncode("ann"));
    transfer().Trf_WriteUserNameRegistryProfile("StandbyBackup", "0");
  }

  // The user's one record is due now, and mails to the addresses as the option says.
  void MakeDue(const char* recordno, const char* mailids = "", const char* mailoption = "0") {
    const LocalTime now = machine().clock.Now();
    ScheduleRecord record;
    record.recordno = recordno;
    record.mailids = mailids;
    record.maillog = "0";
    record.mailoption = mailoption;
    record.schname = "Nightly";
    record.nexttime = FormatDate(kStampPicture, now);
    record.schedtime = "12:30";
    record.onceflag = "0";
    record.sortkey = FormatDate("yyyymmddHHmm", now);
    record.repeatkind = "6";
    record.daymask = "1111111";
    PutFile(UserFile("scheduleData.txt"), "0\r\n" + LineOfRecord(record) + "\r\n");
  }
};

}  // namespace ondura::rehearsal
