#pragma once

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "service/Component.h"
#include "support/CheckedMachine.h"
#include "text/utf16.h"

namespace ondura {

// A machine with the product installed, its users and an engine that answers as it is told. The engine
// takes two seconds for a command and answers every command with 402 unless a test says otherwise.
class House {
 public:
  static constexpr std::string_view kInstall = "C:\\Program Files\\Ondura\\";
  static constexpr std::string_view kData = "C:\\ProgramData\\Ondura\\";
  static constexpr std::string_view kEngine = "C:\\Program Files\\Ondura\\OndClsClient.exe";
  static constexpr std::string_view kTwin = "C:\\Program Files\\Ondura\\OndBackground.exe";
  static constexpr const char* kDue = "11-14-2026 12:30:00";  // when the machine starts
  static constexpr const char* kTomorrow = "11-15-2026 12:30:00";

  explicit House(LocalTime now = SimulatedMachine::kDefaultStart);

  TidyMachine machine;

  // A value of the product configuration, which the start of a component reads.
  void Configure(std::string_view key, std::string_view value);

  // A user with an account and a selection of one folder with one file.
  void AddUser(const std::string& user);
  // Writes the user's schedule file anew with these record lines.
  void PutSchedule(const std::string& name, const std::vector<ScheduleRecord>& records) {
    machine.PutFile(std::string{kData} + "Ondura" + name + "\\scheduleData.txt", FileOf(records));
  }
  static std::string FileOf(const std::vector<ScheduleRecord>& records);
  // A daily file job whose next occurrence is at `nexttime`, and one whose end is always mailed.
  static ScheduleRecord Daily(const std::string& nexttime = kDue);
  static ScheduleRecord Mailing(const std::string& recordno = "1");

  // The service, started on first use, and a second component as its twin.
  Component& Service();
  Component& Twin();
  void Tick() { Service().controller().Cont_CheckStandardRunning(); }
  // Ends the service without a word, as a power cut does, so that the next use starts it anew.
  void LoseService() { service_.reset(); }

  // The engine: what a command does when it is due to end, and the commands it was given so far.
  using Command = std::function<void(ProgramRun&)>;
  void Answer(int command, int result) {
    OnCommand(command, [this, result](ProgramRun&) { WriteResult(result); });
  }
  void OnCommand(int command, Command script) { scripts_[command] = std::move(script); }
  // Something that happens while a command runs, which is then answered with 402.
  void During(int command, std::function<void()> act);
  std::vector<int> Commands() const { return commands_; }
  void WriteResult(int result) { WriteProfile("BackupStatus", "RetValue", std::to_string(result)); }

  // Files and keys of the user who is being served or was last.
  std::string UserPath(std::string_view name) const;
  std::string Text(std::string_view name);  // a UTF-16 file without its mark; "<none>" where missing
  // Writes such a file.
  void PutText(std::string_view name, std::string_view text) {
    machine.PutFile(UserPath(name), std::string{kUtf16Mark} + ToUtf16(text));
  }
  // The bytes of a file; "<none>" where it is missing.
  std::string Bytes(std::string_view name) { return machine.FileBytes(UserPath(name)).value_or("<none>"); }
  // A key of section BackupStatus.
  std::string Status(std::string_view key) {
    return machine.ReadIni(UserPath("Ondura.ini"), "BackupStatus", key);
  }
  void WriteProfile(std::string_view section, std::string_view key, std::string_view value) {
    machine.WriteIni(UserPath("Ondura.ini"), section, key, value);
  }
  void WriteAccount(std::string_view key, std::string_view value);  // in the shift form
  // A key of section Tolmera of the shared state.
  std::string Shared(std::string_view key) {
    return machine.ReadIni(std::string{kData} + "UserName.ini", "Tolmera", key);
  }
  void WriteShared(std::string_view key, std::string_view value) { WriteIni("Tolmera", key, value); }
  void WriteRegistry(std::string_view key, std::string_view value) { WriteIni("Registry", key, value); }
  void WriteMethod(std::string_view value) { WriteIni("ScanType", "DB", value); }
  std::vector<std::string> SessionFiles() { return machine.FilesUnder(UserPath("Session")); }
  // Whether the user's trace has the text.
  bool TraceHas(std::string_view text) {
    return Text("ScheduleTraceFile.txt").find(text) != std::string::npos;
  }
  std::string NextTime();  // of the first record; empty without one

  // The fields of the last mail, as the mail helper got them; empty without one.
  std::vector<std::string> LastMail();
  // Status right after the job, before the close-up overwrites it.
  std::string StatusAfterJob();

  std::string user = "ann";

 private:
  void Install();
  void RunCommand(ProgramRun& run);
  void WriteIni(std::string_view section, std::string_view key, std::string_view value);

  std::vector<std::string> users_;
  std::map<int, Command> scripts_;
  std::vector<int> commands_;
  std::unique_ptr<Component> service_;
  std::unique_ptr<Component> twin_;
};

// A house whose user ann has a job that is due.
struct DueHouse : House {
  explicit DueHouse(const ScheduleRecord& record = Daily()) {
    AddUser("ann");
    PutSchedule("ann", {record});
  }
};

// A job whose end is always mailed, so that code and result text can be read from it.
struct MailingHouse : DueHouse {
  MailingHouse() : DueHouse(Mailing()) {}
};

}  // namespace ondura
