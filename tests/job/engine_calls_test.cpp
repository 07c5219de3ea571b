// The engine's runs outside a job, and what goes to it and comes back beside its commands.

#include <gmock/gmock.h>

#include "job/CDummyCall.h"
#include "job/EngineFiles.h"
#include "job/RemoteCall.h"
#include "job_house.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class EngineCall : public testing::Test, protected JobHouse {
 protected:
  EngineCall() {
    machine.InstallProgram("C:\\exe\\OxClsClient.exe", [this](ProgramRun& run) {
      parameters = run.parameters();
      folder = run.folder();
      run.After(5s, [this] { SetProfile("BackupStatus", "RetValue", " 402"); });
    });
  }

  std::string parameters = "<no run>";
  std::string folder;
};

TEST_F(EngineCall, TheDummyCallServesAUserOfItsOwnAndLeavesNothingButItsSchedulePath) {
  CDummyCall call(services);
  EXPECT_EQ(call.DoDummycall("OxClsClient.exe"), 402);
  EXPECT_EQ(parameters, " 12<C:\\all data\\Acmeschusername\\Temp\\12_30_00_300d>");
  EXPECT_EQ(folder, "C:\\all data");
  EXPECT_EQ(schedule_file.ScheduleFilePath, "C:\\all data\\Acmeschusername");
  EXPECT_FALSE(ports.folders.Exists("C:\\all data\\Acmeschusername"));
  EXPECT_EQ(machine.Elapsed(), 8s);
}

TEST_F(EngineCall, TheDummyCallsFailureComesWithItsDescription) {
  CDummyCall call(services);
  call.CreateTempFolder("ann", "d");
  const auto answer = [&] {
    const EngineFileResult result = call.ResdDLLOutputFile();
    return std::string{result.bResult ? "good " : "bad "} +
           (result.lValue ? std::to_string(*result.lValue) : "as before") + " " +
           result.strDescrip.value_or("as before");
  };
  EXPECT_EQ(answer(), "bad as before as before");
  machine.PutFile(call.GetTempFolderPath() + "\\DLLOutputInfo.txt", "-403\r\nwrong password\r\n");
  EXPECT_EQ(answer(), "bad -403 wrong password");
  machine.PutFile(call.GetTempFolderPath() + "\\DLLOutput.txt", "402\r\nmore\r\n");
  EXPECT_EQ(answer(), "good 402 as before");
}

TEST_F(EngineCall, ANewInstallationMakesTheEngineRunOnceWithoutBrackets) {
  const std::string left_over = "C:\\all data\\UserName.txt";
  for (const std::string& path : {left_over, UserFile("DLLInput.txt"), UserFile("DLLOutputInfo.txt")}) {
    machine.PutFile(path, "old");
  }
  transfer.Trf_WriteUserProfile("serverip", "10.0.0.9");
  RemoteCall call(job, connection);
  call.CallDummy();
  EXPECT_EQ(parameters, "<no run>");
  machine.PutFile("C:\\all data\\NewInstallation.txt", "");
  call.CallDummy();
  EXPECT_EQ(parameters, " 17");
  EXPECT_EQ(job.state.run.serverip + ":" + job.state.run.port, "first.example:11905");
  EXPECT_EQ(job.state.run.proxy.Proxyset, "0");
  for (const std::string& path : {left_over, UserFile("DLLInput.txt"), UserFile("DLLOutputInfo.txt")}) {
    EXPECT_EQ(Bytes(path), "<none>");
  }
  EXPECT_THAT(Text("ScheduleTraceFile.txt"), testing::HasSubstr("  Finished API_REMOTE  402\r\n"));
  parameters = "<no run>";
  call.CallDummy();
  EXPECT_EQ(parameters, "<no run>");
}

TEST_F(EngineCall, ALoginThatNeverEndsHoldsTheCallForFiveHundredSeconds) {
  machine.PutFile(UserFile("LoginProgress.txt"), "");
  RemoteCall(job, connection).CallDummy();
  EXPECT_EQ(machine.Elapsed(), 500100ms);
}

TEST(TempFolder, IsNamedByAStampWhoseTailRepeatsMinuteAndSecondWithoutZeros) {
  JobHouse house;
  house.machine.SetNow(ToLocalTime({2026, 11, 14, 9, 5, 7}));
  const std::string path = "C:\\all data\\Acmebob\\Temp\\9_05_07_57G";
  house.job.temp_folder.CreateTempFolder("bob", "G");
  EXPECT_EQ(house.job.temp_folder.GetTempFolderPath(), path);
  for (const char* name : {"DLLOutput.txt", "DLLOutput1.txt", "DLLInput.txt", "DLLOutputInfo.txt", "kept"}) {
    house.machine.PutFile(path + "\\" + name, "");
  }
  house.job.temp_folder.DeleteInputOutFilesInTempFd();
  EXPECT_THAT(house.machine.FilesUnder(path), ElementsAre(path + "\\kept"));
  house.job.temp_folder.DeleteTempFolder();
  EXPECT_TRUE(house.machine.FilesUnder(path).empty());
  EXPECT_EQ(house.job.temp_folder.GetTempFolderPath(), path);
}

class EngineFilesTest : public testing::Test, protected JobHouse {
 protected:
  EngineFilesTest() { job.temp_folder.CreateTempFolder("ann", "x"); }
  std::string InTemp(std::string_view name) {
    return job.temp_folder.GetTempFolderPath() + "\\" + std::string{name};
  }

  EngineFiles files{job};
};

TEST_F(EngineFilesTest, TheInputHasTwelveLinesInTheCodePageWithTheAccountInTheShiftForm) {
  job.state.run.serverip = "10.0.0.1";
  job.state.run.port = "11905";
  job.state.run.account = {"J\xC3\xBCrg", "pw", "key", "unused"};
  machine.PutFile(InTemp("DLLInput.txt"), "");
  // The old file has to outlive its removal: the new lines go nowhere else.
  machine.Fail("Files.Remove " + InTemp("DLLInput.txt"));
  const EngineFileProxy proxy{1, 2, "proxy", "8080", "me", ""};
  files.WriteDLLInputFileTempFd(proxy, "random");
  EXPECT_EQ(Bytes(InTemp("DLLInput.txt")),
            "10.0.0.1\r\n11905\r\nL\xFEti\r\nry\r\nmg{\r\nrandom\r\n1\r\n2\r\nproxy\r\n8080\r\nme\r\n\r\n");
  files.WriteDLLInputFileTempFd(proxy, "random");
  EXPECT_EQ(Bytes(InTemp("DLLInput.txt")), "<none>");
}

TEST_F(EngineFilesTest, AResultFileCountsAsAnAnswerWhateverItHolds) {
  using Row = std::tuple<const char*, bool, std::optional<std::int32_t>>;
  for (const auto& [bytes, is_there, number] :
       {Row{nullptr, false, std::nullopt}, Row{"", true, std::nullopt}, Row{"402\r\n7\r\n", true, 402},
        Row{" -416 \r\n", true, -416}, Row{"none", true, std::nullopt},
        Row{"99999999999", true, std::nullopt}}) {
    for (const std::string& path : {InTemp("DLLOutput.txt"), UserFile("DLLOutput.txt")}) {
      if (bytes != nullptr) machine.PutFile(path, bytes);
    }
    for (const auto& result : {files.ResdDLLOutputFileTempFd(), files.ResdDLLOutputFile()}) {
      EXPECT_EQ(result.bResult, is_there);
      EXPECT_EQ(result.lValue, number);
    }
  }
}

TEST_F(EngineFilesTest, AScheduleRunsInTwoOfItsStates) {
  for (const std::string status : {"", "0", "1", "2", "3", "5", "10"}) {
    SetProfile("BackupStatus", "Status", status);
    EXPECT_EQ(files.ReadScheduleStatusFile(), status == "1" || status == "2") << status;
  }
}

TEST_F(EngineFilesTest, PortsAreThreeForTwoAndTwentyOneForAnythingElse) {
  files.Trf_WritePORTNumbers(0);
  EXPECT_EQ(job.state.memory.ports.size(), 21U);
  files.Trf_WritePORTNumbers(2);
  EXPECT_THAT(job.state.memory.ports, ElementsAre("11810", "11811", "11812"));
  files.CallIPPORTCheckFull();
  EXPECT_EQ(job.state.run.port, "11905");
}

}  // namespace
}  // namespace ondura
