// Every place on the road where a job can be aborted, and what it leaves there.

#include <gmock/gmock.h>

#include "job/job_texts.h"
#include "job/size_abort.h"
#include "job_house.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;

// The session log is made anew, gets a further block, or a further line after a blank one.
enum class Log { kNew, kBlock, kLine };

using Arrange = std::function<void(RoadHouse&)>;

struct AbortCase {
  std::string story;
  std::string method;  // key DB
  Arrange arrange;
  std::vector<int> commands;
  std::string_view trace;
  Log log = Log::kNew;
  bool in_transfer = false;
  bool ends_programs = true;
};

void Abort(RoadHouse& house) { house.SetStatus("Status", "5"); }

// The engine goes on for ever, and the abort is asked for at its start or after `delay`.
Arrange During(int command, std::chrono::milliseconds delay = 1500ms, void (*act)(RoadHouse&) = Abort) {
  return [=](RoadHouse& house) {
    house.OnCommand(command, [&house, delay, act](ProgramRun& run) {
      run.NeverEnds();
      delay == 0ms ? act(house) : run.After(delay, [&house, act] { act(house); });
    });
  };
}

// The engine ends within the pass that listens for it, so that the next test on the road meets the abort.
Arrange AtEndOf(int command, std::chrono::milliseconds delay, int result = 402,
                void (*act)(RoadHouse&) = Abort) {
  return [=](RoadHouse& house) {
    house.OnCommand(command, [&house, delay, result, act](ProgramRun& run) {
      house.Answer(run, result, delay, [&house, act] { act(house); });
    });
  };
}

void EndByHost(RoadHouse& house) { house.progress.EndProgress(); }

// The local database is given up for want of space.
void WithoutSpace(RoadHouse& house) {
  house.machine.disk().SetFreeBytes("C:\\", 1073741823);
  AtEndOf(24, 2s, 402, [](RoadHouse& late) { late.machine.After(2500ms, [&late] { Abort(late); }); })(house);
}

Arrange InTransferOf(const char* file, std::string_view text) {
  return [=](RoadHouse& house) {
    house.PutText(file, text);
    During(51, 0ms)(house);
  };
}

void ExpectAbort(const AbortCase& row) {
  std::string path;
  // The second time the log's name is known, and a file of that name is there already.
  for (const bool log_is_there : {false, true}) {
    RoadHouse house;
    const std::string log = path.substr(path.empty() ? 0 : house.UserFile("").size());
    if (log_is_there) house.PutText(log, "old\r\n");
    house.machine.PutProcess(RoadHouse::kEngine);  // a run that the job did not start
    house.machine.PutFolder("C:\\all data\\OxVSSTEMP");
    house.machine.PutFile(house.UserFile("MappedDriveInput.txt"), "");
    house.transfer.Trf_WriteUserNameDBProfile("DB", row.method);
    house.job.temp_folder.CreateTempFolder("ann", "G");
    row.arrange(house);
    EXPECT_EQ(house.Run(), kJobStopped);
    EXPECT_EQ(house.commands, row.commands);
    EXPECT_LT(house.machine.Elapsed(), 30s);
    path = house.job.state.run.session_path;
    EXPECT_EQ(house.job.state.run.result_text, job_texts::kUserAbort);
    EXPECT_TRUE(house.job.state.run.cancelled);
    EXPECT_EQ(house.Status("Status") + house.Status("DLLStatus") + house.Status("BackupFailureDays"), "330");
    EXPECT_EQ(house.Text("SchStatus.txt"), std::string{job_texts::kManualCancel} + "\r\n");
    EXPECT_EQ(house.Status("StatusMessageIndicaton"), "1");
    EXPECT_FALSE(house.Status("SchEndTime").empty());

    const bool in_walk = row.trace == "Aborted...";
    EXPECT_THAT(house.Text("ScheduleTraceFile.txt"), testing::HasSubstr(std::string{row.trace} + "\r\n"));
    const std::string main_trace = FromUtf16(house.Bytes("C:\\all data\\ScheduleTraceFile.txt"));
    EXPECT_EQ(main_trace.find(row.trace) != std::string::npos, !in_walk) << main_trace;
    EXPECT_TRUE(!row.in_transfer || house.Status("RetValue") == (in_walk ? "402" : "0"));

    EXPECT_EQ(house.machine.IsRunning("OxClsClient.exe"), !row.ends_programs);
    EXPECT_EQ(house.machine.IsRunning("OnduraSDBManager.exe"), !row.ends_programs);
    const bool temp_stays = house.ports.folders.Exists(house.job.temp_folder.GetTempFolderPath());
    EXPECT_EQ(temp_stays, row.in_transfer && !in_walk);
    EXPECT_EQ(house.ports.folders.Exists("C:\\all data\\OxVSSTEMP"), !row.in_transfer);
    EXPECT_EQ(house.Text("MappedDriveInput.txt"), in_walk ? "<none>" : "");

    const std::string time = path.substr(path.size() - 23, 19);
    const std::string want = std::string{log_is_there && row.log != Log::kNew ? "old\r\n" : ""} +
                             (row.log == Log::kLine ? " \r\n" : RoadHouse::kHead) + time + "  " +
                             std::string{job_texts::kUserAbort} + "\r\n";
    EXPECT_EQ(FromUtf16(house.Bytes(path)), want);
  }
}

TEST(AbortTest, LeavesWhatItsPlaceAsksFor) {
  using namespace job_texts;
  const std::vector<int> port{24};
  const std::vector<int> list{24, 28};
  const std::vector<int> check{24, 28, 30};
  const std::vector<int> transfer{24, 51};
  const std::string_view in_walk = "Aborted...";
  const auto in_file = InTransferOf("atbkupfolderlist.txt", "C:\\Docs\\a.txt\r\n");
  const auto in_endings = InTransferOf("AutoFileSelection.txt", "1\r\n.txt\r\n");
  for (const AbortCase& row : {
           AbortCase{"command 24 runs", "0", During(24), port, kAborted28},
           {"between two tries", "0", AtEndOf(24, 1100ms, -405), port, kAborted28},
           {"after the port number, by the host", "0", AtEndOf(24, 2s, 402, EndByHost), port, kAbortedPort},
           {"the local database is given up", "0", WithoutSpace, port, kAbortedBefore28},
           {"command 28 runs", "1", During(28), list, kAborted28},
           {"command 28 runs, by the host", "1", During(28, 1s, EndByHost), list, kAborted28},
           {"after the contents", "1", AtEndOf(28, 2100ms), list, kAbortedContents},
           {"the local database is checked", "1", During(30), check,
            "User aborted scheduled backup 30 in progress", Log::kNew, false, false},
           {"before the transfer", "1", AtEndOf(30, 2100ms), check, kAborted28},
           {"within a folder of the walk", "0", During(51, 0ms), transfer, in_walk, Log::kLine, true},
           {"after a file of the walk", "0", in_file, transfer, in_walk, Log::kBlock, true},
           {"in the walk of an automatic selection", "0", in_endings, transfer, in_walk, Log::kLine, true},
           {"after the input", "1", During(51, 0ms), {24, 28, 30, 51}, kAbortedInput, Log::kBlock, true},
       }) {
    SCOPED_TRACE(row.story);
    ExpectAbort(row);
  }
}

TEST(LeaveSizeCalculation, TellsTheUserEndsTheEngineAndCleansUp) {
  JobHouse house;
  house.machine.PutProcess(RoadHouse::kEngine);
  house.machine.PutFile(house.UserFile("MappedDriveInput.txt"), "x");
  house.job.temp_folder.CreateTempFolder("ann", "S");
  LeaveSizeCalculation(house.job);
  const std::string text = "You have aborted the scheduled backup job that was in progress.";
  const std::string log = house.UserFile("Session\\Scheduled 11-14-2026 12-30-00.txt");
  EXPECT_EQ(house.job.state.run.result_text, text);
  EXPECT_TRUE(house.job.state.run.cancelled);
  EXPECT_EQ(FromUtf16(house.Bytes(log)), " \r\n11-14-2026 12-30-00  " + text + "\r\n");
  EXPECT_EQ(house.Status("Status"), "3");
  EXPECT_TRUE(
      house.Text("ScheduleTraceFile.txt")
          .starts_with("ScheduleCancelled 1\r\nAborted...\r\n11-14-2026 12:30:00 " + text + log + "\r\n"));
  EXPECT_EQ(house.Text("SchStatus.txt"), std::string{job_texts::kManualCancel} + "\r\n");
  EXPECT_FALSE(house.ports.folders.Exists(house.job.temp_folder.GetTempFolderPath()));
  EXPECT_EQ(house.Text("MappedDriveInput.txt"), "<none>");
  EXPECT_FALSE(house.machine.IsRunning("OxClsClient.exe"));
}

}  // namespace
}  // namespace ondura
