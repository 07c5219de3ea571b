#include "ReportingHouse.h"
#include "reporting/Progress.h"
#include "reporting/stage_log.h"
#include "reporting/time_diff.h"

namespace ondura {
namespace {

using testing::Optional;

class ReportingFiles : public ReportingHouse {
 protected:
  Progress progress_{machine_.machine(), installation_, transfer_};
};

TEST_F(ReportingFiles, EachWriterHasItsFileAndFormAndAddsNothingButTheLineEnd) {
  options_.WriteTrace("one");
  options_.WriteTraceFile("t\xC3\xBCr");
  trace_.User("  short", kShortHourPicture);
  options_.WriteTraceMain("two\r\nlines");
  trace_.Main(" tail", kErrorPicture);
  options_.WriteTraceService("three");
  options_.Writeintofile("C:\\data\\free.log", "t\xC3\xBCr");
  options_.Writeintofile("C:\\data\\free.log", "");
  ExpectUtf16("C:\\data\\Acmeann\\ScheduleTraceFile.txt",
              "one\r\nt\xC3\xBCr\r\n11-14-2026 9:05:07  short\r\n");
  ExpectUtf16("C:\\data\\ScheduleTraceFile.txt", "two\r\nlines\r\n11-14-2026 9:05:07:57 tail\r\n");
  ExpectUtf16("C:\\data\\ScheduleTraceFileService.txt", "three\r\n");
  EXPECT_THAT(machine_.FileBytes("C:\\data\\free.log"), Optional(std::string{"t\xFCr\n\n"}));
}

TEST_F(ReportingFiles, ALineFollowsTheUserAndADeletedFileComesBackWithItsMark) {
  installation_.CurrentUser = "bea";
  options_.WriteTrace("lost, for the folder is missing");
  machine_.PutFolder("C:\\data\\Acmebea");
  options_.WriteTrace("deleted");
  machine_.disk().Erase("C:\\data\\Acmebea\\ScheduleTraceFile.txt");
  options_.WriteTrace("kept");
  ExpectUtf16("C:\\data\\Acmebea\\ScheduleTraceFile.txt", "kept\r\n");
  EXPECT_EQ(machine_.FileBytes("C:\\data\\Acmeann\\ScheduleTraceFile.txt"), std::nullopt);
}

TEST_F(ReportingFiles, AStageLineHasSeverityAndTimeAndAnUnknownKindIsEmpty) {
  machine_.SetNow(ToLocalTime({2026, 11, 14, 16, 5, 7}));
  for (const int kind : {kStageInformation, kStageSuccess, kStageError, 3, -1}) {
    WriteStageLogLine(machine_.machine(), "C:\\data\\STBTraceFile.txt", "t\xC3\xBCr", kind);
  }
  EXPECT_THAT(machine_.FileBytes("C:\\data\\STBTraceFile.txt"),
              Optional(std::string{"Information : [11-14-2026 16:05:07 : ] t\xFCr\r\n"
                                   "Success     : [11-14-2026 16:05:07 : ] t\xFCr\r\n"
                                   "Error       : [11-14-2026 16:05:07 : ] t\xFCr\r\n\r\n\r\n"}));
}

TEST_F(ReportingFiles, TheResetWritesEveryKeyInItsOrderAndNoOther) {
  progress_.ResetBackupProgressIni();
  std::string writes;
  for (const std::string& call : machine_.CallsMatching("ProfileFiles.WriteString")) {
    writes += call.substr(call.find('[')) + ";";
  }
  EXPECT_EQ(
      writes,
      "[BackupStatus] Paused=0;[ProgWnd] VALUE=0;[ProgWnd] Job=;[BackupProgressInfo] BackupInProgress=0;"
      "[BackupProgressInfo] Percentage=;[BackupProgressInfo] FileName=;[BackupProgressInfo] Backedup Files=;"
      "[BackupProgressInfo] Total Progress=;[BackupProgressInfo] Time Elapsed=;[BackupProgressInfo] Est "
      "Time=;[BackupProgressInfo] Tans Rate=;[BackupProgressInfo] FilePath=;[BackupProgressInfo] FilePer=;"
      "[BackupProgressInfo] FilePath Dual=;[BackupProgressInfo] FilePer Dual=;[RestoreProgressInfo] "
      "RestoreInProgress =0;[RestoreProgressInfo] Percentage =;[RestoreProgressInfo] FileName =;"
      "[RestoreProgressInfo] Backedup Files =;[RestoreProgressInfo] Total Progress =;[RestoreProgressInfo] "
      "Time Elapsed =;[RestoreProgressInfo] Est Time =;[RestoreProgressInfo] Tans Rate =;"
      "[RestoreProgressInfo] FilePer =;[RestoreProgressInfo] FilePath Dual=;[RestoreProgressInfo] FilePer "
      "Dual=;");
}

TEST_F(ReportingFiles, TheJobsOwnWritesTouchTheirKeysAlone) {
  const std::string ini = "C:\\data\\Acmeann\\BackupProgress.ini";
  progress_.WriteTransferOver();
  std::string all = "[ProgWnd]\r\nVALUE=0\r\n[BackupProgressInfo]\r\nBackupInProgress=0\r\n";
  EXPECT_THAT(machine_.FileBytes(ini), Optional(all));
  progress_.WriteWindowStatusReset();
  EXPECT_THAT(machine_.FileBytes(ini), Optional(all.insert(all.find("[B"), "Status=0\r\n")));
}

TEST_F(ReportingFiles, ASizeHasOneDecimalThatIsCut) {
  for (const auto& [bytes, text] : {std::pair{0., "0.0 B"},
                                    {1000., "1000.0 B"},
                                    {1024., "0.0"},
                                    {1025., "1.0 KB"},
                                    {1290., "1.2 KB"},
                                    {1536., "1.5 KB"},
                                    {2047., "1.9 KB"},
                                    {2048., "2.0 KB"},
                                    {1048576., "1024.0 KB"},
                                    {1073741824., "1024.0 MB"},
                                    {5368709119., "4.9 GB"},
                                    {2199023255551.9999, "2048.0 GB"}}) {
    EXPECT_EQ(progress_.GetProperSizeValue(bytes), text);
  }
  machine_.surroundings().locale_texts[kLocaleDecimal] = ",";
  EXPECT_EQ(progress_.GetProperSizeValue(1024), "0,0");
  EXPECT_EQ(progress_.GetProperSizeValue(1290), "1,2 KB");
}

TEST(TimeDiff, TellsTheDurationInWords) {
  const auto time = [](std::string_view text) {
    return ParseFixedDate("11-14-2026 " + std::string{text}).value();
  };
  for (const auto& [start, end, words] :
       {std::tuple{"10:00:00", "11:02:03", " 1 hour, 2 minutes and 3 seconds"},
        {"10:59:50", "11:00:10", " 20 seconds"},
        {"10:00:00", "10:00:00", ""},
        {"08:00:00", "10:00:01", " 2 hours and 1 second"},
        {"08:00:00", "09:01:00", " 1 hour and 1 minute"},
        {"08:00:30", "08:02:00", " 1 minute and 30 seconds"},
        {"08:00:30", "08:00:00", ""}}) {
    EXPECT_EQ(TimeDiffString(time(start), time(end)), words) << start;
  }
}

}  // namespace
}  // namespace ondura
