// The steps of the road between its stops: addresses and port, quota, and what the transfer prepares, resets
// and cleans up.

#include <gmock/gmock.h>

#include "job/CDummyCall.h"
#include "job/job_texts.h"
#include "job_house.h"
#include "util/cBase64.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

struct StepsHouse : RoadHouse {
  // Port and address where the engine and where the user interface read them.
  std::string Stored() {
    return Ini("Acme.ini", "Tolmera", "IPAddres") + ":" + Ini("Acme.ini", "Tolmera", "OutPort") + " " +
           transfer.Trf_ReadUserProfile("serverip") + ":" + transfer.Trf_ReadUserProfile("port");
  }
  std::size_t TraceCount(std::string_view text) {
    const std::string lines = Text("ScheduleTraceFile.txt");
    std::size_t count = 0;
    for (auto at = lines.find(text); at != std::string::npos; at = lines.find(text, at + 1)) ++count;
    return count;
  }
};

TEST(AddressTest, ComesFromTheProfileOrIsTheDefaultThatIsWrittenThere) {
  using Row = std::tuple<const char*, const char*, const char*>;
  for (const auto& [address, port, want] :
       {Row{"", "", "first.example:11905 first.example:11905"}, Row{"localhost", "7", ": localhost:7"},
        Row{"10.0.0.9", "", ":11905 10.0.0.9:11905"}, Row{"", "7", "first.example: first.example:7"}}) {
    StepsHouse house;
    house.transfer.Trf_WriteUserProfile("serverip", address);
    house.transfer.Trf_WriteUserProfile("port", port);
    house.connection.ReadAccount();
    house.connection.ReadPort();
    house.connection.SettleAddress();
    EXPECT_EQ(house.Stored(), want);
  }
}

TEST(AddressTest, TheEnginesAnswerReplacesWhatItHas) {
  using Row = std::tuple<const char*, const char*, Leave>;
  for (const auto& [answer, want, leave] :
       {Row{nullptr, ": localhost:11905", std::nullopt},
        Row{"11911\r\n", "localhost:11911 localhost:11911", std::nullopt},
        Row{"11911\r\n10.0.0.9\r\nmore\r\n", "10.0.0.9:11911 10.0.0.9:11911", std::nullopt},
        Row{"11911\r\n\r\n", ":11911 :11911", kJobFailed}}) {
    StepsHouse house;
    if (answer != nullptr) house.machine.PutFile(house.UserFile("DLLOutput1.txt"), answer);
    house.job.temp_folder.CreateTempFolder("ann", "G");
    house.connection.ReadAccount();
    house.connection.ReadPort();
    EXPECT_EQ(house.connection.DiscoverPort(), leave) << want;
    EXPECT_EQ(house.Stored(), want);
    EXPECT_EQ(house.ports.folders.Exists(house.job.temp_folder.GetTempFolderPath()), !leave);
    EXPECT_EQ(house.Status("BackupFailureDays"), leave ? "5" : "4");
    if (!leave) continue;
    EXPECT_EQ(house.TraceCount("  No port information recieved from server."), 1U);
    EXPECT_EQ(FromUtf16(house.Bytes(house.job.state.run.session_path)),
              " \r\n  Unable to get port information.\r\n");
    EXPECT_EQ(house.Text("SchStatus.txt"), std::string{job_texts::kViewLog} + "\r\n");
  }
}

TEST(PortTriesTest, PauseAndSwitchAfterTheFifthAndTheTenthOnlyWithAConnection) {
  for (const bool connected : {true, false}) {
    StepsHouse house;
    house.machine.surroundings().is_connected = connected;
    house.transfer.Trf_WriteUserProfile("port", "7");
    std::vector<std::string> addresses;
    house.OnCommand(24, [&](ProgramRun& run) {
      addresses.push_back(house.Stored());
      if (addresses.size() == 7) house.SetProfile("Tolmera", "OutPort", "9");
      house.Answer(run, -405, 1100ms);
    });
    house.connection.ReadAccount();
    house.connection.ReadPort();
    // This result alone goes on to the transfer after its tries.
    EXPECT_EQ(house.connection.DiscoverPort(), std::nullopt);
    EXPECT_EQ(house.commands.size(), 10U);
    EXPECT_EQ(house.machine.Elapsed(), connected ? 21s : 11s);
    const std::string before = ": localhost:7";
    const std::string after = connected ? "second.example:11905 second.example:11905" : before;
    EXPECT_EQ(addresses[4], before);
    EXPECT_EQ(addresses[5], after);
    EXPECT_TRUE(!connected || house.Stored() == after);
  }
}

TEST(AccountTest, TheNewEncryptionPasswordGoesBeforeTheOldOne) {
  for (const std::string fresh : {"", "fresh"}) {
    RoadHouse house;
    house.SetProfile("Tolmera", "encpasswordnew", cBase64{house.ports.code_page}.encode(fresh));
    house.connection.ReadAccount();
    EXPECT_EQ(house.job.state.run.account.encryption_password, fresh.empty() ? "key" : fresh);
  }
}

TEST(QuotaStopTest, EndsTheProgramsTellsTheFiguresAndStartsTheRefresh) {
  StepsHouse house;
  house.SetProfile("QuotaStatus", "Used", "2048");
  house.SetProfile("QuotaStatus", "Max", "1536");
  for (const char* key : {"Status", "ProgStatus", "Cancel"}) house.SetStatus(key, "7");
  for (const auto& [section, key] :
       {std::pair{"ProgWnd", "VALUE"}, std::pair{"BackupProgressInfo", "BackupInProgress"}}) {
    house.machine.WriteIni(house.UserFile("BackupProgress.ini"), section, key, "1");
  }
  house.machine.PutProcess(RoadHouse::kEngine);
  house.OnCommand(16, [](ProgramRun& run) { run.ExitAfter(1h, 0); });
  EXPECT_EQ(house.connection.StopOverQuota(), kJobStopped);
  EXPECT_EQ(house.machine.Elapsed(), 0s) << "the refresh is not waited for";
  EXPECT_THAT(house.commands, ElementsAre(16));
  EXPECT_THAT(house.machine.CallsMatching("Processes.Terminate"), testing::SizeIs(1));
  EXPECT_EQ(FromUtf16(house.Bytes(house.job.state.run.session_path)),
            std::string{RoadHouse::kHead} + "Used Quota: 2.0 KB\r\nMax Quota: 1.5 KB\r\n\r\n" +
                std::string{job_texts::kQuotaStop} + "\r\n");
  EXPECT_EQ(house.job.state.run.result_text, job_texts::kQuotaStop);
  EXPECT_EQ(house.Status("Status") + house.Status("ProgStatus") + house.Status("Cancel"), "000");
  EXPECT_EQ(house.Ini("BackupProgress.ini", "ProgWnd", "VALUE"), "0");
  EXPECT_EQ(house.Ini("BackupProgress.ini", "BackupProgressInfo", "BackupInProgress"), "0");
  EXPECT_EQ(house.Text("SchStatus.txt"), " " + std::string{job_texts::kQuotaUsedUp} + "\r\n");
}

TEST(StartTest, NothingOfAnEarlierJobIsLeft) {
  StepsHouse house;
  for (const char* key : {"Paused", "Cancel", "ProgStatus"}) house.SetStatus(key, "1");
  house.SetProfile("sj", "LSN", "1");
  house.PutText("SchStatusError.txt", "Backup has failed.\r\n");
  house.machine.PutFile(house.UserFile("STBTraceFile.txt"), "");
  house.machine.WriteIni(house.UserFile("BackupProgress.ini"), "ProgWnd", "Status", "1");
  EXPECT_EQ(house.Run(), kJobOrdinaryEnd);
  EXPECT_EQ(house.Status("Paused") + house.Status("Cancel") + house.Status("ProgStatus"), "000");
  EXPECT_EQ(house.Ini("Acme.ini", "sj", "LSN"), "");
  EXPECT_EQ(house.Text("SchStatusError.txt") + house.Text("STBTraceFile.txt"), "<none><none>");
  EXPECT_EQ(house.Ini("BackupProgress.ini", "ProgWnd", "Status"), "0");
  EXPECT_TRUE(house.progress.ProgressRunning());
  EXPECT_THAT(house.machine.CallsMatching("ContinuousBackup.ValidateLocalDBDllVersion"), testing::SizeIs(1));
  EXPECT_THAT(house.machine.CallsMatching("Services."), testing::Not(testing::IsEmpty()));
}

TEST(StartTest, ABlockedProfileEndsTheJobBeforeTheOldResultPassesForTheNewOne) {
  StepsHouse house;
  house.machine.Fail("ProfileFiles.WriteString *[BackupStatus] RetValue=0", 2);
  EXPECT_EQ(house.Run(), kJobFailed);
  EXPECT_THAT(house.commands, ElementsAre(24));
  EXPECT_EQ(house.job.state.run.result_text, job_texts::kCannotClearResult);
  EXPECT_EQ(house.Status("Status") + house.Status("DLLStatus") + house.Status("BackupFailureDays"), "335");
  EXPECT_THAT(FromUtf16(house.Bytes(house.job.state.run.session_path)),
              testing::HasSubstr(std::string{job_texts::kCannotClearResult}));
  EXPECT_EQ(house.Text("SchStatusError.txt"), "Backup has failed.\r\n");
}

TEST(TransferTest, PreparesResetsAndCleansUpAroundTheEngine) {
  StepsHouse house;
  const std::string long_name(249, 'x');  // a path of 257 characters
  house.machine.PutFile("C:\\Docs\\" + long_name, "");
  house.machine.PutFile("C:\\Docs\\Out\\b.txt", "");
  house.PutText("atbkupExcludelist.txt", "C:\\Docs\\Out\r\n");
  house.transfer.Trf_WriteUserNameProfile("VSSTEMPPATH", "D:\\Shadow");
  house.machine.PutFolder("D:\\Shadow\\OxVSSTEMP");
  for (const char* key : {"CompareListCount", "StatusCheckCount", "SCount"}) house.SetStatus(key, "9");
  house.SetStatus("DLLStatus", "0");
  for (const char* name : {"DLLInput.txt", "DLLOutput.txt", "ToBackup.txt", "noToBackup.txt",
                           "CompareListTrace.txt", "MappedDriveInput.txt"}) {
    house.machine.PutFile(house.UserFile(name), "old");
  }
  std::string at_start;
  std::string meanwhile;
  const auto counts = [&] { return house.Status("CompareListCount") + house.Status("StatusCheckCount"); };
  house.OnCommand(51, [&](ProgramRun& run) {
    at_start = counts();
    run.After(1s, [&] {
      meanwhile = counts() + house.Status("SCount") + house.Status("DLLStatus") + " " +
                  house.Text("ExcludedFiles.txt") + house.Text("ToBackup.txt") +
                  house.Text("noToBackup.txt") + house.Text("CompareListTrace.txt");
    });
    house.machine.WriteIni(house.UserFile("BackupProgress.ini"), "ProgWnd", "VALUE", "1");
    house.Answer(run, 402);
  });
  EXPECT_EQ(house.Run(), kJobOrdinaryEnd);
  EXPECT_EQ(at_start, "00");
  EXPECT_EQ(meanwhile, "0114 C:\\Docs\\Out\r\n<none><none><none>");
  EXPECT_EQ(house.Status("SCount"), "0");
  EXPECT_EQ(house.Status("BackupFailureDays"), "0");
  EXPECT_EQ(house.machine.ReadIni("C:\\all data\\UserName.ini", "Registry", "Excluded"), "0");
  EXPECT_EQ(house.Ini("BackupProgress.ini", "ProgWnd", "VALUE"), "0");
  for (const char* name :
       {"ExcludedFiles.txt", "DLLInput.txt", "DLLOutput.txt", "MappedDriveInput.txt", "SkippedFiles.txt"}) {
    EXPECT_EQ(house.Text(name), "<none>") << name;
  }
  EXPECT_FALSE(house.ports.folders.Exists("D:\\Shadow\\OxVSSTEMP"));
  EXPECT_EQ(house.shadow_copy.closed, 1);
  EXPECT_EQ(house.machine.OpenHandles(), 1U) << "the engine's, held until the job is closed up";
}

TEST(TransferTest, AMethodThatChangesDuringTheCheckBeginsWithAnIncompleteList) {
  StepsHouse house;
  house.transfer.Trf_WriteUserNameDBProfile("DB", "1");
  std::string at_start;
  house.OnCommand(30, [&](ProgramRun& run) {
    house.Answer(run, 402, 2s, [&] { house.transfer.Trf_WriteUserNameDBProfile("DB", "0"); });
  });
  house.OnCommand(51, [&](ProgramRun& run) {
    at_start = house.Status("StatusCheckCount");
    house.Answer(run, 402);
  });
  EXPECT_EQ(house.Run(), kJobOrdinaryEnd);
  EXPECT_EQ(at_start, "0");
  EXPECT_EQ(house.Status("StatusCheckCount"), "1");
  EXPECT_TRUE(house.Text("TempCom\\CompareListInput1.txt").starts_with("C:\\Docs\\a.txt/"));
}

TEST(TransferTest, EachResultKeepsOrRemovesWhatItsRowSays) {
  // Result, code, seconds of the job, whether the temp folder stays, reason for the mail.
  using Row = std::tuple<int, JobCode, std::chrono::seconds, bool, std::string_view>;
  for (const auto& [result, code, pause, temp_stays, reason] :
       {Row{-416, kJobFailed, 2s, false, job_texts::kConnectionReason},
        Row{-404, kJobFailed, 0s, false, job_texts::kConnectionReason}, Row{-429, kJobStopped, 0s, true, ""},
        Row{-411, kJobOrdinaryEnd, 0s, true, ""}, Row{-77, kJobStopped, 0s, true, ""}}) {
    StepsHouse house;
    house.job.temp_folder.CreateTempFolder("ann", "G");
    house.OnCommand(51, [&, answer = result](ProgramRun& run) { house.Answer(run, answer); });
    house.PutText("Session\\Scheduled of the engine.txt", "x");
    EXPECT_EQ(house.Run(), code) << result;
    // 4 s before the connection, 24 for 3.3, 51 for 2.6 and a second after each.
    EXPECT_EQ(house.machine.Elapsed(), 4s + 3300ms + 1300ms + 1300ms + 1s + pause) << result;
    EXPECT_EQ(house.ports.folders.Exists(house.job.temp_folder.GetTempFolderPath()), temp_stays) << result;
    EXPECT_EQ(house.job.state.run.extra_mail_text, reason) << result;
    EXPECT_THAT(house.job.state.run.session_path, testing::HasSubstr("of the engine")) << result;
  }
}

struct DumpStage : Stage {
  Leave Run(JobState&) override { return std::nullopt; }
  std::vector<SelectedItem> Items(JobState& state) override {
    state.run.dump_folder = "C:\\Dumps";
    return {};
  }
};

TEST(TransferTest, ADumpIsThrownAwayOnceItIsSaved) {
  for (const int result : {402, 426, -1001, 0}) {
    StepsHouse house;
    DumpStage stage;
    house.stages.stage = &stage;
    house.machine.PutFile("C:\\Dumps\\a.dmp", "");
    house.OnCommand(51, [&](ProgramRun& run) { house.Answer(run, result); });
    house.Run();
    EXPECT_EQ(house.ports.folders.Exists("C:\\Dumps"), result != 402) << result;
  }
}

TEST(ServerListTest, AFailureCallsTheStatusRoutineTwiceAndOthersOnce) {
  using Row = std::tuple<int, std::size_t, const char*, const char*>;
  for (const auto& [result, calls, status, log] :
       {Row{-416, 2U, "3", "one"}, Row{-431, 2U, "3", "one"}, Row{-403, 1U, "3", "one"},
        Row{-507, 1U, "1", "none"}, Row{-514, 1U, "1", "none"}}) {
    StepsHouse house;
    house.transfer.Trf_WriteUserNameDBProfile("DB", "1");
    house.machine.PutFile(house.UserFile("scheduleData.txt"), "1\r\nline\r\n");
    house.OnCommand(28, [&, answer = result](ProgramRun& run) { house.Answer(run, answer); });
    EXPECT_EQ(house.Run(), result);
    EXPECT_EQ(house.TraceCount("  Session File path "), calls) << result;
    EXPECT_EQ(house.Status("Status"), status) << result;
    EXPECT_EQ(house.Status("BackupFailureDays"), "5") << result;
    EXPECT_EQ(house.machine.FilesUnder(house.UserFile("Session")).empty(), std::string{log} == "none");
    EXPECT_EQ(house.Bytes(house.UserFile("scheduleData.txt")),
              std::string{log} == "none" ? "<none>" : "0\r\nline\r\n");
    EXPECT_TRUE(house.machine.IsRunning("OnduraSDBManager.exe")) << "only an abort ends it";
  }
}

TEST(CutOffWrapUpTest, LeavesTheTextsAndNoTempFolders) {
  StepsHouse house;
  house.job.temp_folder.CreateTempFolder("ann", "G");
  house.machine.PutFolder("C:\\all data\\OxVSSTEMP");
  house.transfer.Trf_WriteUserNameRegistryProfile("StopSchedule", "1");
  house.transfer.Trf_WriteUserNameRegistryProfile("StopScheduleTime", "11-14-2026 12:30:00");
  EXPECT_EQ(house.Run(), kJobStopped);
  EXPECT_EQ(house.Status("Status") + " " + house.Status("BackupFailureDays"), "402 0");
  EXPECT_EQ(
      house.Text("SchStatus.txt"),
      "The backup job has been stopped due to hard stop option set by you. The backup will resume at next "
      "scheduled time.\r\n");
  EXPECT_EQ(house.job.state.run.result_text,
            "The scheduled job has been stopped due to the Cut Off time set in Scheduler Options. The backup "
            "will resume at the next scheduled time.");
  EXPECT_FALSE(house.ports.folders.Exists(house.job.temp_folder.GetTempFolderPath()));
  EXPECT_FALSE(house.ports.folders.Exists("C:\\all data\\OxVSSTEMP"));
}

TEST(RerunTest, TheOuterJobReturnsItsOwnCodeButForAnEngineThatNeverStopsAsking) {
  for (const bool stops : {true, false}) {
    StepsHouse house;
    std::string cancel;
    house.OnCommand(51, [&](ProgramRun& run) {
      const bool is_first = std::ranges::count(house.commands, 51) == 1;
      cancel = house.Status("Cancel");
      house.Answer(run, stops && !is_first ? -1 : -427, 2s, [&] { house.SetStatus("Cancel", "2"); });
    });
    house.job.temp_folder.CreateTempFolder("ann", "G");
    EXPECT_EQ(house.Run(), stops ? kJobOrdinaryEnd : kJobStopped);
    EXPECT_EQ(std::ranges::count(house.commands, 51), stops ? 2 : 17);
    EXPECT_EQ(house.TraceCount("stopped after 16 nested runs"), stops ? 0U : 1U);
    EXPECT_EQ(house.Status("BackupFailureDays"), stops ? "0" : "4");
    EXPECT_EQ(house.Status("Status") + " " + house.Status("DLLStatus"), stops ? "-1 4" : "-427 4");
    EXPECT_EQ(house.Text("SchStatus.txt"), std::string{job_texts::kViewLog} + "\r\n");
    EXPECT_FALSE(house.ports.folders.Exists(house.job.temp_folder.GetTempFolderPath()));
    EXPECT_EQ(cancel, "2") << "what is asked for meanwhile is for the next run too";
  }
}

TEST(WrapUpTest, TheFifthSizeRefreshIsTheLastAndAnExceededQuotaLeavesItsMarker) {
  StepsHouse house;
  house.OnCommand(51, [&](ProgramRun& run) { house.Answer(run, -432); });
  house.OnCommand(16, [&](ProgramRun& run) {
    const bool is_fifth = std::ranges::count(house.commands, 16) == 5;
    house.SetProfile("QuotaStatus", "Used", "5");
    house.Answer(run, is_fifth ? 402 : -416);
  });
  EXPECT_EQ(house.Run(), kJobStopped);
  EXPECT_EQ(house.Status("Status"), "402");
  EXPECT_EQ(house.Text("QuotaExceeded.txt"), "");
  EXPECT_EQ(house.TraceCount("  Session File path "), 2U) << "of the quota and of the end";
  EXPECT_EQ(house.Text("SchStatus.txt"), std::string{job_texts::kViewLog} + "\r\n");
}

TEST(PumpTest, AHostsDummyCallLeavesTheJobItsScheduleFile) {
  StepsHouse house;
  bool called = false;
  house.machine.OnPump([&] {
    if (called || house.commands.empty() || house.commands.back() != 51) return;
    called = true;
    CDummyCall(house.services).DoDummycall("OxClsClient.exe");
  });
  EXPECT_EQ(house.Run(), kJobOrdinaryEnd);
  EXPECT_TRUE(called);
  EXPECT_EQ(house.schedule_file.ScheduleFilePath, house.UserFile("scheduleData.txt"));
}

}  // namespace
}  // namespace ondura
