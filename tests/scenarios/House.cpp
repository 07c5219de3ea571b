#include "scenarios/House.h"

#include "profile/ProductConfiguration.h"
#include "text/text.h"
#include "text/utf16.h"

namespace ondura {

using namespace std::chrono_literals;

House::House(LocalTime now) : machine(now) { Install(); }

void House::Install() {
  machine.PutFolder(kInstall);
  machine.PutFolder(kData);
  for (const auto& [key, value] : {std::pair{"ProductNumber", "3"},
                                   {"ProductName", "Ondura"},
                                   {"ProductInstallationName", "Ondura"},
                                   {"ExeGroup", "Ond"},
                                   {"ProductCaption", "Ondura Backup"},
                                   {"Language", "English"}}) {
    Configure(key, value);
  }
  machine.WriteIni(std::string{kInstall} + "UserName.ini", "Registry", "VirtualPath", kData);
  WriteShared("Standard", "0");
  WriteShared("Started", "0");
  WriteRegistry("StandbyBackup", "0");
  WriteMethod("0");
  machine.InstallProgram(kEngine, [this](ProgramRun& run) { RunCommand(run); });
  machine.InstallProgram(std::string{kInstall} + "OnduraSDBManager.exe",
                         [](ProgramRun& run) { run.NeverEnds(); });
  for (const char* name : {"OndScan.exe", "OndruaEStartup.exe"}) {
    machine.InstallProgram(std::string{kInstall} + name, [](ProgramRun& run) { run.ExitAfter(1s, 0); });
  }
  During(24, [this] { machine.PutFile(UserPath("DLLOutput1.txt"), "11911\r\nlocalhost\r\n"); });
  During(16, [this] {
    WriteProfile("QuotaStatus", "Used", "1000");
    WriteProfile("QuotaStatus", "Max", "5000");
  });
}

void House::Configure(std::string_view key, std::string_view value) {
  Installation installation;
  installation.VirtualPath = kData;
  const ProductConfiguration configuration(machine.outside(), installation);
  machine.WriteIni(std::string{kData} + "Configuration.ini", "ProductInfo", configuration.StoredForm(key),
                   configuration.StoredForm(value));
}

void House::AddUser(const std::string& name) {
  users_.push_back(name);
  std::string list;
  for (const std::string& each : users_) list += each + ";";
  machine.PutFile(std::string{kData} + "userlist.ini", list + "\r\n");
  user = name;
  machine.PutFolder(UserPath(""));
  WriteAccount("username", name);
  WriteAccount("password", "secret");
  WriteAccount("encpassword", "key");
  WriteAccount("serverip", "localhost");
  WriteAccount("port", "11905");
  machine.PutFile("C:\\Docs\\a.txt", "hello");
  PutText("atbkupfolderlist.txt", "C:\\Docs\\\r\n");
}

ScheduleRecord House::Daily(const std::string& nexttime) {
  ScheduleRecord record;
  record.recordno = "1";
  record.schname = "Nightly";
  record.nexttime = nexttime;
  record.schedtime = "12:30";
  record.onceflag = "0";
  record.schtext = "every day";
  record.maillog = "0";
  record.mailoption = "0";
  record.sortkey = SortKeyOfText(nexttime);
  record.repeatkind = "6";
  record.daymask = "1111111";
  return record;
}

ScheduleRecord House::Mailing(const std::string& recordno) {
  ScheduleRecord record = Daily();
  record.recordno = recordno;
  record.mailids = "ann@example.org";
  record.mailoption = "3";
  return record;
}

std::string House::FileOf(const std::vector<ScheduleRecord>& records) {
  std::string text = "0\r\n";
  for (const ScheduleRecord& record : records) text += LineOfRecord(record) + "\r\n";
  return text;
}
Component& House::Service() {
  if (!service_) {
    service_ = std::make_unique<Component>(machine.machine());
    service_->controller().cont_InitialSch(kInstall);
  }
  return *service_;
}

Component& House::Twin() {
  if (!twin_) {
    twin_ = std::make_unique<Component>(machine.machine());
    twin_->controller().cont_InitialSch_Backgrnd(kInstall);
  }
  return *twin_;
}
void House::During(int command, std::function<void()> act) {
  OnCommand(command, [this, act = std::move(act)](ProgramRun&) {
    act();
    WriteResult(402);
  });
}

void House::RunCommand(ProgramRun& run) {
  const int command = std::stoi(run.parameters());
  commands_.push_back(command);
  run.After(2s, [this, &run, command] {
    const auto script = scripts_.find(command);
    script == scripts_.end() ? WriteResult(402) : script->second(run);
  });
}

std::string House::UserPath(std::string_view name) const {
  return std::string{kData} + "Ondura" + user + (name.empty() ? "" : "\\") + std::string{name};
}

std::string House::Text(std::string_view name) {
  const auto bytes = machine.FileBytes(UserPath(name));
  if (!bytes) return "<none>";
  return bytes->starts_with(kUtf16Mark) ? FromUtf16(*bytes) : "<no mark>" + *bytes;
}
void House::WriteAccount(std::string_view key, std::string_view value) {
  Installation installation;
  installation.VirtualPath = kData;
  installation.ProductInstallationName = "Ondura";
  installation.CurrentUser = user;
  Transfer(machine.outside(), installation).Trf_WriteUserProfile(key, value);
}
void House::WriteIni(std::string_view section, std::string_view key, std::string_view value) {
  machine.WriteIni(std::string{kData} + "UserName.ini", section, key, value);
}
std::string House::NextTime() {
  const auto lines = LinesOf(Bytes("scheduleData.txt"));
  return lines.size() < 2 ? "" : RecordOfLine(lines.at(1)).nexttime;
}

std::vector<std::string> House::LastMail() {
  std::vector<std::string> fields;
  for (const LaunchRequest& launch : machine.Launches()) {
    if (launch.file.ends_with("OndruaEStartup.exe")) fields = Split(launch.parameters, ";");
  }
  return fields;
}

std::string House::StatusAfterJob() {
  constexpr std::string_view kLabel = "  Status : ";
  for (const std::string& line : LinesOf(Text("ScheduleTraceFile.txt"))) {
    const auto at = line.find(kLabel);
    if (at != std::string::npos) return line.substr(at + kLabel.size());
  }
  return "<none>";
}

}  // namespace ondura
