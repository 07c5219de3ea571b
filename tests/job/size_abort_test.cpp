#include "job/size_abort.h"

#include "job/job_texts.h"
#include "job_house.h"
#include "text/text.h"

namespace ondura {
namespace {

TEST(LeaveSizeCalculation, TellsTheUserEndsTheEngineAndCleansUp) {
  JobHouse house;
  house.machine.PutProcess("C:\\exe\\OxClsClient.exe");
  house.machine.PutFile(house.UserFile("MappedDriveInput.txt"), "x");
  house.job.temp_folder.CreateTempFolder("ann", "S");
  LeaveSizeCalculation(house.job);
  const std::string text = "You have aborted the scheduled backup job that was in progress.";
  const std::string log = house.UserFile("Session\\Scheduled 11-14-2026 12-30-00.txt");
  EXPECT_EQ(house.job.state.run.result_text, text);
  EXPECT_EQ(house.job.state.run.session_path, log);
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
