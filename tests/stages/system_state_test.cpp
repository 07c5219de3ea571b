#include "stages/clsSystemState.h"

#include "stages/SystemStateHouse.h"
#include "stages/ntbackup_command.h"
#include "text/utf16.h"

namespace ondura {
namespace {

constexpr std::string_view kLogFilesKey = R"(Software\Microsoft\Ntbackup\Log Files)";

class SystemStateTool : public testing::Test {
 protected:
  void PutRegistryText(const std::string& key, std::string_view name, const std::string& text) {
    house_.machine.PutRegistryValue({RegistryRoot::kLocalMachine, key, name}, {RegistryType::kText, text, 0});
  }

  SystemStateHouse house_;
  clsSystemState& tool_ = house_.Service().system_state();
};

TEST_F(SystemStateTool, NamesTheSystemByItsVersion) {
  for (const auto& [version, name] : {std::pair{SystemVersion{2, 5, 2}, "2003"},
                                      {SystemVersion{2, 5, 1}, "XP"},
                                      {SystemVersion{2, 5, 0}, "2000"},
                                      {SystemVersion{2, 6, 0}, "2000"},
                                      {SystemVersion{2, 6, 1}, "XP"},
                                      {SystemVersion{2, 10, 0}, "2000"},
                                      {SystemVersion{2, 6, 3}, ""},
                                      {SystemVersion{2, 4, 0}, "Windows NT"},
                                      {SystemVersion{1, 4, 0}, "Windows 95"},
                                      {SystemVersion{1, 4, 10}, "Windows 98"},
                                      {SystemVersion{1, 5, 0}, "Windows ME"},
                                      {SystemVersion{1, 3, 1}, "Windows 95"}}) {
    house_.machine.surroundings().version = version;
    EXPECT_EQ(tool_.GetOsVersion(), name) << version.major << "." << version.minor;
  }
}

TEST_F(SystemStateTool, KeepsEachProcessIdInItsOwnFile) {
  tool_.CreatePIDFile(" 4711 ", PidFile::kBackup);
  tool_.CreatePIDFile("12", PidFile::kNtbackup);
  EXPECT_EQ(house_.Bytes("ABUPIDFile.dat"), " 4711 ");
  EXPECT_EQ(house_.Bytes("NTBPIDFile.dat"), "12");
  EXPECT_EQ(tool_.GetPID(PidFile::kBackup), " 4711 ");
  tool_.CreatePIDFile("x1", PidFile::kBackup);
  EXPECT_EQ(tool_.GetPID(PidFile::kBackup), "");
  tool_.DeletePIDFile(PidFile::kNtbackup);
  EXPECT_EQ(tool_.GetPID(PidFile::kNtbackup), "");
  EXPECT_EQ(house_.Bytes("NTBPIDFile.dat"), "<none>");
}

TEST_F(SystemStateTool, EndsAProcessWithTheRightToEndItAlone) {
  const ProcessId id = house_.machine.PutProcess("C:\\any.exe");
  EXPECT_TRUE(tool_.ShellClose(id));
  EXPECT_FALSE(house_.machine.IsRunning("any.exe"));
  EXPECT_FALSE(tool_.ShellClose(id));
}

TEST_F(SystemStateTool, CutsBehindTheLastSeparator) {
  EXPECT_EQ(clsSystemState::StringEndFolder(R"(C:\a\b.bkf)", "\\"), "b.bkf");
  EXPECT_EQ(clsSystemState::StringEndFolder("oneANDtwoandthree", "And"), "three");
  EXPECT_EQ(clsSystemState::StringEndFolder("C:\\a\\", "\\"), "");
  EXPECT_EQ(clsSystemState::StringEndFolder("plain", "\\"), "plain");
  EXPECT_EQ(clsSystemState::StringEndFolder("plain", ""), "plain");
  EXPECT_EQ(tool_.GetCompName(), "SIMULATED");
}

TEST_F(SystemStateTool, ReadsTextsAndNumbersAndRefusesEverythingElse) {
  const RegistryName name{RegistryRoot::kLocalMachine, "Software\\Any", "value"};
  RegistryValue value{RegistryType::kText, "before", 0};
  EXPECT_EQ(tool_.QueryValueEx(name, value), 2);
  house_.machine.PutRegistryValue(name, {RegistryType::kBinary, "", 7});
  EXPECT_EQ(tool_.QueryValueEx(name, value), -1);
  EXPECT_EQ(value.text, "before");
  house_.machine.PutRegistryValue(name, {RegistryType::kDword, "", 7});
  EXPECT_EQ(tool_.QueryValueEx(name, value), 0);
  EXPECT_EQ(value.number, 7U);
}

TEST_F(SystemStateTool, TheHighestNumberOfAJobsLogsWins) {
  const std::string key{kLogFilesKey};
  PutRegistryText(key, "Log File Count", "11");
  for (const int number : {2, 10, 12}) {
    PutRegistryText(key + "\\Log#" + std::to_string(number), "Job Name", "OXSYSTEMSTATE job");
    house_.machine.PutFile(rehearsal::SystemBackup(house_.machine.outside()).LogPath(number),
                           "log " + std::to_string(number) + " \x96");
  }
  std::string path = "before";
  EXPECT_EQ(tool_.GetLogErrorString("OxSystemState job", path), "log 10 \xE2\x80\x93");
  EXPECT_EQ(path, house_.UserPath("session\\OxSystemState job.txt"));
  EXPECT_EQ(house_.Bytes("session\\OxSystemState job.txt"), "log 10 \x96");
  path = "before";
  EXPECT_EQ(tool_.GetLogErrorString("another job", path), "");
  EXPECT_EQ(path, "before");
}

TEST_F(SystemStateTool, OnlyAVerifiedCopyIsASuccess) {
  for (const auto& [log, succeeded] :
       std::map<std::string, bool>{{"Verify Status\r\nOperation did not successfully complete", true},
                                   {"Verify Status", true},
                                   {"verify status", false},
                                   {"Operation did not successfully complete", false},
                                   {"Backup completed without any error", false},
                                   {"", false}}) {
    for (const bool is_unicode : {false, true}) {
      const std::string bytes = is_unicode ? std::string{kUtf16Mark} + ToUtf16(log) : log;
      house_.machine.PutFile("C:\\a.log", bytes);
      EXPECT_EQ(tool_.CheckLogError("OxSystemState", "C:\\a.log"), succeeded) << log;
    }
  }
  EXPECT_TRUE(
      house_.TraceHas("No NT backup log entry found.\r\nSystem state backup log ends\r\n"
                      "Exit CheckForErrorString :  False\r\nExit CheckLogError return with False\r\n"));
  EXPECT_FALSE(tool_.CheckLogError("OxSystemState", "C:\\none.log"));
}

TEST(NtbackupCommand, HasASwitchForEveryChoice) {
  EXPECT_EQ(NtbackupCommandLine("C:\\f", "j", {false, NtbackupLog::kFull, true, true}),
            "NTBACKUP backup systemstate /f \"C:\\f\" /J \"j\" /V:no  /L:f  /R:yes  /RS:yes ");
  EXPECT_EQ(NtbackupCommandLine("C:\\f", "j", {true, NtbackupLog::kNone, false, false}),
            "NTBACKUP backup systemstate /f \"C:\\f\" /J \"j\" /V:yes  /L:n  /R:no  /RS:no ");
}

}  // namespace
}  // namespace ondura
