// The service around its jobs: the start of its hosts, what each pass tidies up, and who is looked at when.

#include "scenarios/House.h"
#include "text/text.h"
#include "text/utf16.h"

namespace ondura {
namespace {

using testing::HasSubstr;

const std::string kInstall{House::kInstall};
const std::string kMainTrace = std::string{House::kData} + "ScheduleTraceFile.txt";
const std::string kTray = kInstall + "OndTray.exe";

std::string MainTrace(House& house) { return FromUtf16(house.machine.FileBytes(kMainTrace).value_or("")); }

std::vector<std::string> Started(const std::vector<LaunchRequest>& launches) {
  std::vector<std::string> started;
  for (const LaunchRequest& launch : launches) {
    started.push_back(launch.file + "|" + launch.parameters + "|" + launch.folder + "|" +
                      std::to_string(launch.show_mode));
  }
  return started;
}

struct PluginCase {
  std::string story, product, launched;
  bool is_wow64;
  std::vector<std::string> files;
  std::vector<std::string> opened, hidden;
  std::string key;
};

TEST(StartUpStory, ThePluginIsSetUpOnceForItsProductAlone) {
  const std::string batch = kInstall + "x64 OndUI register.bat";
  const std::string both = batch + "|||0";
  const std::string window = kInstall + "OndUI.exe|||0";
  const std::string library = kInstall + "OnduraUI.dll";
  const std::string registers = "regsvr32.exe|/s OnduraUI.dll|C:\\Program Files\\Ondura|0";
  for (const PluginCase& row : {
           PluginCase{"a library", "2", "", false, {library}, {}, {registers}, "1"},
           PluginCase{"again where the key says so", "2", "0", false, {library}, {}, {registers}, "1"},
           PluginCase{"no library", "2", "", false, {}, {}, {}, "1"},
           PluginCase{"done before", "2", "1", false, {library}, {}, {}, "1"},
           PluginCase{"a 32-bit process", "2", "", true, {batch, library}, {both, window}, {}, "1"},
           PluginCase{"a 32-bit process without its batch", "2", "", true, {library}, {}, {}, ""},
           PluginCase{"a 32-bit process, done before", "2", "1", true, {batch}, {}, {}, "1"},
           PluginCase{"another product", "3", "", false, {batch, library}, {}, {}, ""},
       }) {
    SCOPED_TRACE(row.story);
    House house;
    house.Configure("ProductNumber", row.product);
    house.WriteShared("PluginLaunch", row.launched);
    house.machine.surroundings().is_wow64 = row.is_wow64;
    for (const std::string& file : row.files) house.machine.PutFile(file, "");
    house.Service();
    EXPECT_EQ(Started(house.machine.OpenedForUser()), row.opened);
    EXPECT_EQ(Started(house.machine.Launches()), row.hidden);
    EXPECT_EQ(house.Shared("PluginLaunch"), row.key);
  }
}

struct TickCase {
  std::string story, standard, started;
  std::string trace;  // of a pass that is made
  bool opens = false;
  bool twin_runs = false, tray_runs = false;
  std::string standby = "1", tray = "";
};

TEST(TickStory, TheServiceServesWhereItIsInChargeAndOpensTheMonitorWhenItTakesOver) {
  for (const TickCase& row : {
           TickCase{"in charge", "0", "0", "Calling from first Service exe service.", false, true},
           TickCase{"after a job of its own", "0", "1", " Calling from Service exe2.", false, true},
           TickCase{"the twin is in charge", "1", "0", "", false, true},
           TickCase{"the twin is gone", "1", "0", " Calling from Service exe3.", true},
           TickCase{"in the middle of its job", "1", "1", " Calling from Service exe4.", true, false, false,
                    "1", "2"},
           TickCase{"nobody was in charge", "", "", " Calling from Service exe4.", true},
           TickCase{"no monitor wanted", "1", "0", " Calling from Service exe3.", false, false, false, "0"},
           TickCase{"closed by its user", "1", "0", " Calling from Service exe3.", false, false, false, "1",
                    "3"},
           TickCase{"there already", "1", "0", " Calling from Service exe3.", false, false, true},
       }) {
    SCOPED_TRACE(row.story);
    DueHouse house;
    house.Service();
    house.WriteShared("Standard", row.standard);
    house.WriteShared("Started", row.started);
    house.WriteRegistry("StandbyBackup", row.standby);
    house.WriteRegistry("Tray", row.tray);
    if (row.twin_runs) house.machine.PutProcess(House::kTwin);
    if (row.tray_runs) house.machine.PutProcess(kTray);
    house.Tick();
    const bool is_served = !row.trace.empty();
    EXPECT_EQ(!house.Commands().empty(), is_served);
    EXPECT_EQ(house.Shared("Standard"), is_served ? "0" : "1");
    EXPECT_THAT(MainTrace(house), HasSubstr(row.trace));
    const std::vector<std::string> opened(row.opens ? 1 : 0, kTray + "|||3");
    EXPECT_EQ(Started(house.machine.OpenedForUser()), opened);
    EXPECT_EQ(house.machine.ReadIni(std::string{House::kData} + "UserName.ini", "Registry", "Tray"),
              row.opens ? "1" : row.tray);
    const std::string line = " launching monitor " + row.standard + " " + row.started + "\r\n";
    EXPECT_EQ(MainTrace(house).find(line) != std::string::npos, row.opens);
  }
}

TEST(PassStory, TheMarkerOfAHardStopAndAMessageBearTheNameOfTheProduct) {
  DueHouse house(House::Mailing());
  house.Configure("ProductName", "Acme");
  house.WriteRegistry("Default User name", "cpp");  // "ann" in the shift form
  for (const char* name : {"AcmeHardStop.txt", "OnduraHardStop.txt"}) {
    house.machine.PutFile(house.UserPath(name), "");
  }
  house.Answer(24, -431);
  house.Tick();
  EXPECT_EQ(house.Bytes("AcmeHardStop.txt") + house.Bytes("OnduraHardStop.txt"), "<none>");
  EXPECT_THAT(house.LastMail().at(5), HasSubstr("Install Acme again"));
}

TEST(PassStory, AnOccurrenceIsConsideredFromTwoKeyUnitsBeforeItsTime) {
  for (const auto& [minute, nexttime, considered, runs] :
       {std::tuple{30, "11-14-2026 12:33:00", false, false},
        {30, "11-14-2026 12:32:00", true, false},
        {30, "11-14-2026 12:31:00", true, false},
        {30, "11-14-2026 12:30:00", true, true},
        {59, "11-14-2026 13:00:00", false, false}}) {
    SCOPED_TRACE(nexttime);
    DueHouse house(House::Daily(nexttime));
    house.Service();
    house.machine.SetNow(ToLocalTime({2026, 11, 14, 12, minute, 0}));
    house.Tick();
    EXPECT_EQ(house.TraceHas(" 12:30:00  Waiting for next transfer time."), considered && !runs);
    EXPECT_EQ(house.Commands().size(), runs ? 3U : 0U);
    EXPECT_EQ(house.Service().context().state.DispatchBusy, !considered) << "the next pass clears it";
  }
}

TEST(PassStory, AListIsWalkedFromTwoNamesOnAndOnlyItsLastLineCounts) {
  for (const auto& [list, is_served] : {std::pair{"ann", false},
                                        {"ann\r\n", false},
                                        {"ann;", true},
                                        {"bob;eve\r\nann;bob\r\n", true},
                                        {"ann;bob\r\neve;\r\n", false},
                                        {"ann;\r\n\r\n", false}}) {
    DueHouse house;
    house.Service();
    house.machine.PutFile(std::string{House::kData} + "userlist.ini", list);
    house.Tick();
    EXPECT_EQ(!house.Commands().empty(), is_served) << list;
  }
}

TEST(PassStory, WhatTheJobToldItsWindowGoesWithTheJob) {
  DueHouse house;
  std::string during;
  house.During(51, [&] { during = house.Bytes("scheduleInfo.txt"); });
  house.Tick();
  EXPECT_EQ(during, "0;0;0 KB;0 KB;0;00:00:00\r\n");
  EXPECT_EQ(house.Bytes("scheduleInfo.txt"), "<none>");
}

struct CapCase {
  std::string story, path;
  std::size_t cap;
  std::string before;  // what is traced before the look at the size
  std::function<void(House&)> act;
};

TEST(TraceCaps, ExactlyTheCapStaysAndOneByteMoreGoes) {
  const std::string users = std::string{House::kData} + "Onduraann\\ScheduleTraceFile.txt";
  const std::string folders = "(S1)Input files location is " + std::string{House::kData} +
                              "\r\n(S1)Exe location is " + kInstall + "\r\n";
  const std::string tick = "11-14-2026 12:30:00 (5.5.17) Calling from first Service exe service.\r\n";
  const std::string due = "11-14-2026 12:30:00  Missed sch Backup option: \r\n";
  const auto starts = [](House& house) { house.Service(); };
  const auto twin_starts = [](House& house) { house.Twin(); };
  const auto ticks = [](House& house) { house.Tick(); };
  for (const CapCase& row : {CapCase{"the service's start", kMainTrace, 4097152, folders, starts},
                             {"the twin's start", kMainTrace, 4097152, "", twin_starts},
                             {"a pass", kMainTrace, 4097152, tick, ticks},
                             {"the scan of the users", users, 4097152, "", ticks},
                             {"a job", users, 100000, due, ticks}}) {
    for (const std::size_t over : {0U, 1U}) {
      SCOPED_TRACE(row.story + ", over by " + std::to_string(over));
      const bool is_due = row.cap == 100000;
      DueHouse house(House::Daily(is_due ? House::kDue : House::kTomorrow));
      if (row.before != folders) house.Service();
      house.machine.PutFile(row.path, std::string(row.cap + over - 2 * row.before.size(), 't'));
      row.act(house);
      const std::string left = house.machine.FileBytes(row.path).value_or("");
      EXPECT_EQ(left.starts_with("ttt"), over == 0);
      EXPECT_EQ(left.find("ttt") == std::string::npos, over == 1);
    }
  }
}

}  // namespace
}  // namespace ondura
