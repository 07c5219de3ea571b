#include "backupset/LocalDatabase.h"

#include "backup_set_house.h"
#include "text/text.h"

namespace ondura {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

constexpr std::string_view kScanner = "C:\\exe\\OxScan.exe";
constexpr std::string_view kEngine = "C:\\exe\\OxClsClient.exe";
constexpr std::string_view kDatabase = "LDB\\OnduraLDB.Ond";

struct DatabaseHouse : BackupSetHouse {
  DatabaseHouse() {
    for (const auto program : {kScanner, kEngine}) {
      machine.InstallProgram(program, [](ProgramRun& run) { run.ExitAfter(milliseconds{500}, 0); });
    }
  }

  void SetShared(std::string_view key, std::string_view value) {
    machine.WriteIni("C:\\data\\UserName.ini", "Tolmera", key, value);
  }
  std::vector<std::string> Started() {
    std::vector<std::string> started;
    for (const auto& launch : machine.Launches()) {
      started.push_back(launch.file.substr(7) + ":" + launch.parameters + ":" + launch.folder);
    }
    return started;
  }
  // The user's trace with a mark in place of the time that some lines begin with.
  std::vector<std::string> Traces() {
    auto lines = LinesOf(List("ScheduleTraceFile.txt"));
    for (auto& line : lines) {
      if (line.starts_with("11-14-2026 12:30:")) line.replace(0, 19, "@");
    }
    return lines;
  }

  ResetDate reset_date{machine.machine().clock, profile, transfer};
  LocalDatabase database{machine.machine(), installation, transfer, profile, reset_date, programs, trace};
};

struct CheckCase {
  const char *story, *watcher, *scan, *owner, *interactive;
  std::string traces;   // after the two status lines
  std::string started;  // all that was
  int waited_ms;
  bool has_engine = true;
};

const std::string kDigests = "|@ atbkupchksum : |@ Realtimechksum : ";
const std::string kByEngine = "OxClsClient.exe: 30<\\run>:C:\\data";
const std::string kNoScan = "|@ WatcherStatus is 1 : Scan is not in progress so call Scan.exe with 29";
const std::string kForeignScan =
    "|@ WatcherStatus is 1 : Scan is going on,so wait till Scanstatus is 0 |WatcherStatus is 1 : Scan is "
    "over";
const std::string kNewOwner = kDigests + "|@ b30cmdcall is True so calling backend with 30 ";

TEST(CheckLDBStatus, TakesItsBranch) {
  for (const CheckCase& row :
       {CheckCase{"watched, no scan: the scanner rebuilds", "1", "", "ann", "ANN", kNoScan,
                  "OxScan.exe:29:C:\\data", 2500},
        {"watched, scan under way: waits for it", "1", "1", "ann", "ann", kForeignScan, "", 1000},
        {"new owner: cleared twice", "0", "0", "ann", "bob", kNewOwner, kByEngine, 4500},
        {"the same owner: the engine", "0", "0", " ann", "Ann ", kDigests, kByEngine, 3500},
        {"no owner is no new owner", "", "", "", "bob", kDigests, kByEngine, 3500},
        {"without an engine it goes on", "", "", "", "", kDigests, kByEngine, 3000, false}}) {
    SCOPED_TRACE(row.story);
    DatabaseHouse house;
    house.SetProfile("REALTIME", "WatcherStatus", row.watcher);
    house.SetProfile("REALTIME", "scanStatus", row.scan);
    house.SetShared("Scheduled", row.owner);
    house.SetShared("Interactive", row.interactive);
    house.machine.PutFile(house.UserFile(kDatabase), "old");
    if (!row.has_engine) house.machine.RemoveProgram(kEngine);
    house.machine.After(milliseconds{950}, [&] { house.SetProfile("REALTIME", "scanStatus", "0"); });
    EXPECT_EQ(house.database.CheckLDBStatus("\\run"), kLocalDatabaseReady);
    EXPECT_EQ(Join(house.Traces(), "|"), "strScannStatus  : " + std::string{row.scan} +
                                             "|strWatcherStatus  : " + row.watcher + row.traces +
                                             "|LDB Checking is over");
    EXPECT_EQ(Join(house.Started(), "|"), row.started);
    EXPECT_EQ(house.machine.Elapsed().count(), row.waited_ms);
    EXPECT_EQ(house.Profile("BackupStatus", "CompareListCount"), "0");
    EXPECT_EQ(house.Profile("BackupStatus", "StatusCheckCount"), "1");
  }
}

struct AbortCase {
  const char *watcher, *scan, *text;
  bool in_main_trace;
};

TEST(CheckLDBStatus, EndsEveryWaitWithFourAtAnAbortAndLeavesTheKeys) {
  for (const AbortCase& row : {AbortCase{"1", "1", "User aborted scheduled backup Scan is going on", false},
                               {"1", "0", "User aborted scheduled backup Scan in progress", true},
                               {"0", "0", "User aborted scheduled backup 30 in progress", true}}) {
    SCOPED_TRACE(row.text);
    DatabaseHouse house;
    for (const auto program : {kScanner, kEngine}) {
      house.machine.InstallProgram(program, [](ProgramRun& run) { run.NeverEnds(); });
    }
    house.SetProfile("REALTIME", "WatcherStatus", row.watcher);
    house.SetProfile("REALTIME", "scanStatus", row.scan);
    house.machine.After(milliseconds{6000}, [&] { house.SetProfile("BackupStatus", "Status", "5"); });
    EXPECT_EQ(house.database.CheckLDBStatus(""), kLocalDatabaseAborted);
    EXPECT_EQ(house.Traces().back(), row.text);
    EXPECT_EQ(house.machine.FileBytes("C:\\data\\ScheduleTraceFile.txt").has_value(), row.in_main_trace);
    EXPECT_EQ(house.Profile("BackupStatus", "CompareListCount"), "");
    EXPECT_LT(house.machine.Elapsed(), milliseconds{6500});
  }
}

TEST(LocalDatabase, EndsTheScannerOfAScanThatNobodyWatchesAndIsNotHeldUpByOneThatStays) {
  for (const bool stays : {false, true}) {
    DatabaseHouse house;
    const ProcessId scanner = house.machine.PutProcess(kScanner);
    if (stays) house.machine.Fail("Processes.Terminate");
    house.SetProfile("REALTIME", "scanStatus", "1");
    house.SetProfile("REALTIME", "ScannerId", std::to_string(scanner));
    Processes& outside = house.machine.outside().processes;
    const ProcessHandle watched = outside.OpenById(scanner, ProcessAccess::kQuery);
    EXPECT_EQ(house.database.CheckLDBStatus(""), kLocalDatabaseReady);
    EXPECT_EQ(outside.ExitCode(watched), stays ? kStillActive : 1001U);
    outside.Close(watched);
    EXPECT_THAT(house.Traces(), testing::Contains("Process is still running").Times(stays ? 100 : 0));
    EXPECT_THAT(house.Traces(), testing::Contains("Backup engine successfully terminated"));
    EXPECT_THAT(house.Started(), ElementsAre("OxClsClient.exe: 30<>:C:\\data"));
  }
}

TEST(DeleteLDBFiles, TriesAgainAndGivesUpOnWhatStays) {
  DatabaseHouse house;
  for (const std::string_view name : {std::string_view{"atbkupfolderlistRealTime.txt"},
                                      std::string_view{"AutoFileSelectionRealTime.txt"}, kDatabase}) {
    house.machine.PutFile(house.UserFile(name), "x");
  }
  house.machine.Fail("Files.Remove " + house.UserFile("AutoFileSelectionRealTime.txt"));
  house.machine.Fail("Files.Remove " + house.UserFile(kDatabase), 4);
  house.database.DeleteLDBFiles("ann");
  EXPECT_THAT(house.Traces(), ElementsAre("File(AutoFileSelectionRealTime.txt) exists even after DeleteFile",
                                          "File(OnduraLDB.Ond) exists even after DeleteFile1Retry",
                                          "File(OnduraLDB.Ond) exists even after DeleteFile2Retry",
                                          "File(OnduraLDB.Ond) exists even after DeleteFile3Retry"));
  EXPECT_EQ(house.machine.Elapsed(), milliseconds{2000 + 1000 + 3 * 5000});
  EXPECT_TRUE(house.machine.FileBytes(house.UserFile(kDatabase)));
  EXPECT_FALSE(house.machine.FileBytes(house.UserFile("AutoFileSelectionRealTime.txt")));
}

struct ResetCase {
  const char *story, *day, *started, *trace, *next_day;
};

constexpr ResetCase kResetCases[] = {
    {"no date: it is set", " ", "", "Next DB Date is set \r\n", "21"},
    {"due today", "14", "OxScan.exe:5:C:\\data", "7Days reached reset DB and set date \r\n", "21"},
    {"due tomorrow", "15", "", "(no file)", "15"}};

TEST(VaccumDB, ResetsWhenTheDateHasComeAndOnlyOnce) {
  for (const ResetCase& row : kResetCases) {
    SCOPED_TRACE(row.story);
    DatabaseHouse house;
    house.SetProfile("Tolmera", "TrayIconDay", row.day);
    house.SetProfile("Tolmera", "TrayIconMonth", *row.day == ' ' ? "" : "11");
    house.SetProfile("Tolmera", "TrayIconYear", *row.day == ' ' ? "" : "2026");
    house.database.VaccumDB();
    house.database.VaccumDB();
    EXPECT_EQ(Join(house.Started(), "|"), row.started);
    EXPECT_EQ(house.List("ScheduleTraceFile.txt"), row.trace);
    EXPECT_EQ(house.Profile("Tolmera", "TrayIconDay"), row.next_day);
    EXPECT_EQ(house.machine.Elapsed().count(), 0);
  }
}

TEST(LocalDatabase, TellsWhetherTheScannerRuns) {
  DatabaseHouse house;
  EXPECT_FALSE(house.database.IsScanInProgress());
  for (const char* id : {"-7", "4000000"}) {
    house.SetProfile("REALTIME", "ScannerId", id);
    EXPECT_FALSE(house.database.IsScanInProgress());
  }
  EXPECT_THAT(house.Traces(), ElementsAre("@ ClientProcID : 0", "@ ClientProcID : -7",
                                          "@ ClientProcID : 4000000", "@ Process is not running "));
  house.SetProfile("REALTIME", "ScannerId", std::to_string(house.machine.PutProcess(kScanner)));
  EXPECT_TRUE(house.database.IsScanInProgress());
  EXPECT_THAT(house.Traces().back(), testing::StartsWith("@ Process is running with handle : "));
}

TEST(LocalDatabase, TestsAMutexAndNeverKeepsIt) {
  DatabaseHouse house;
  EXPECT_FALSE(house.database.IsmutexInProgress("Global\\scan", false));
  EXPECT_THAT(house.Traces().back(), testing::StartsWith("@ Global Mutex is Not in use with Handle ID : "));
  EXPECT_EQ(house.machine.CallsMatching("NamedMutexes.Release").size(), 1U);
  house.machine.HoldMutex("Global\\scan");
  EXPECT_TRUE(house.database.IsmutexInProgress("Global\\scan", false));
  EXPECT_EQ(house.machine.Elapsed(), milliseconds{1000});
  EXPECT_THAT(house.Traces().back(), testing::StartsWith("@ Global Mutex is in use with Handle ID : "));
  EXPECT_FALSE(house.database.IsmutexInProgress("Global\\scan", true));
}

}  // namespace
}  // namespace ondura
