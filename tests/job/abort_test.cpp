// Every place on the road where a job can be aborted, and what it leaves there.

#include <gmock/gmock.h>

#include "job/job_texts.h"
#include "road_house.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;

// The session log is made anew, gets a further block, or a further line after a blank one.
enum class Log { kNew, kBlock, kLine };

struct AbortCase {
  std::string story;
  std::string method;  // key DB
  std::function<void(RoadHouse&)> arrange;
  std::vector<int> commands;
  std::string trace;
  Log log = Log::kNew;
  bool ends_programs = true;
  bool in_transfer = false;

  friend void PrintTo(const AbortCase& row, std::ostream* out) { *out << row.story; }
};

void Abort(RoadHouse& house) { house.SetStatus("Status", "5"); }

// The engine goes on for ever, and the abort is asked for at its start or after `delay`.
std::function<void(RoadHouse&)> During(int command, std::chrono::milliseconds delay = 1500ms) {
  return [=](RoadHouse& house) {
    house.OnCommand(command, [&house, delay](ProgramRun& run) {
      run.NeverEnds();
      delay == 0ms ? Abort(house) : run.After(delay, [&house] { Abort(house); });
    });
  };
}

// The engine ends within the pass that listens for it, so that the next test on the road meets the abort.
std::function<void(RoadHouse&)> AtEndOf(int command, std::chrono::milliseconds delay, int result = 402) {
  return [=](RoadHouse& house) {
    house.OnCommand(command, [&house, delay, result](ProgramRun& run) {
      house.Answer(run, result, delay, [&house] { Abort(house); });
    });
  };
}

class AbortTest : public testing::TestWithParam<AbortCase> {};

TEST_P(AbortTest, LeavesWhatItsPlaceAsksFor) {
  const AbortCase& row = GetParam();
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
    EXPECT_THAT(house.Text("ScheduleTraceFile.txt"), testing::HasSubstr(row.trace + "\r\n"));
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

const std::string kText28{job_texts::kAborted28};

INSTANTIATE_TEST_SUITE_P(
    Job, AbortTest,
    testing::Values(AbortCase{"command 24 runs", "0", During(24), {24}, kText28},
                    AbortCase{"between two tries", "0", AtEndOf(24, 1100ms, -405), {24}, kText28},
                    AbortCase{"after the port number, by the host",
                              "0",
                              [](RoadHouse& house) {
                                house.OnCommand(24, [&house](ProgramRun& run) {
                                  house.Answer(run, 402, 2s, [&house] { house.progress.EndProgress(); });
                                });
                              },
                              {24},
                              std::string{job_texts::kAbortedPort}},
                    AbortCase{"the local database is given up for want of space",
                              "0",
                              [](RoadHouse& house) {
                                house.machine.disk().SetFreeBytes("C:\\", 1073741823);
                                house.OnCommand(24, [&house](ProgramRun& run) {
                                  house.Answer(run, 402);
                                  house.machine.After(4500ms, [&house] { Abort(house); });
                                });
                              },
                              {24},
                              std::string{job_texts::kAbortedBefore28}},
                    AbortCase{"command 28 runs", "1", During(28), {24, 28}, kText28},
                    AbortCase{"command 28 runs, by the host",
                              "1",
                              [](RoadHouse& house) {
                                house.OnCommand(28, [&house](ProgramRun& run) {
                                  run.NeverEnds();
                                  run.After(1s, [&house] { house.progress.EndProgress(); });
                                });
                              },
                              {24, 28},
                              kText28},
                    AbortCase{"after the contents",
                              "1",
                              AtEndOf(28, 2100ms),
                              {24, 28},
                              std::string{job_texts::kAbortedContents}},
                    AbortCase{"the local database is checked",
                              "1",
                              During(30),
                              {24, 28, 30},
                              "User aborted scheduled backup 30 in progress",
                              Log::kNew,
                              false},
                    AbortCase{"before the transfer", "1", AtEndOf(30, 2100ms), {24, 28, 30}, kText28},
                    AbortCase{"within a folder of the walk",
                              "0",
                              During(51, 0ms),
                              {24, 51},
                              "Aborted...",
                              Log::kLine,
                              true,
                              true},
                    AbortCase{"behind a file of the walk",
                              "0",
                              [](RoadHouse& house) {
                                house.PutText("atbkupfolderlist.txt", "C:\\Docs\\a.txt\r\n");
                                During(51, 0ms)(house);
                              },
                              {24, 51},
                              "Aborted...",
                              Log::kBlock,
                              true,
                              true},
                    AbortCase{"in the walk of an automatic selection",
                              "0",
                              [](RoadHouse& house) {
                                house.machine.PutFile(house.UserFile("AutoFileSelection.txt"),
                                                      "1\r\n.txt\r\n");
                                During(51, 0ms)(house);
                              },
                              {24, 51},
                              "Aborted...",
                              Log::kLine,
                              true,
                              true},
                    AbortCase{"after the input",
                              "1",
                              During(51, 0ms),
                              {24, 28, 30, 51},
                              std::string{job_texts::kAbortedInput},
                              Log::kBlock,
                              true,
                              true}),
    [](const auto& row) {
      std::string name = row.param.story;
      std::erase_if(name, [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; });
      return name;
    });

}  // namespace
}  // namespace ondura
