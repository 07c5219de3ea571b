// What goes to the engine and comes back beside its commands.

#include "job/EngineFiles.h"

#include <gmock/gmock.h>

#include "job_house.h"

namespace ondura {
namespace {

using testing::ElementsAre;

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
  const auto& numbers = job.state.memory.ports;
  files.Trf_WritePORTNumbers(0);
  EXPECT_EQ(numbers.size(), 21U);
  EXPECT_EQ(numbers.front() + "-" + numbers.back(), "11910-11930");
  files.Trf_WritePORTNumbers(2);
  EXPECT_THAT(numbers, ElementsAre("11810", "11811", "11812"));
  files.CallIPPORTCheckFull();
  EXPECT_EQ(job.state.run.port, "11905");
}

}  // namespace
}  // namespace ondura
