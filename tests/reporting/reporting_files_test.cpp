#include <gtest/gtest.h>

#include "profile/Transfer.h"
#include "reporting/progress.h"
#include "reporting/stage_log.h"
#include "reporting/trace.h"
#include "support/checked_machine.h"
#include "util/utf16.h"

namespace ondura {
namespace {

using testing::Optional;
using testing::Values;

class ReportingFiles : public testing::Test {
 protected:
  ReportingFiles() {
    installation_.VirtualPath = "C:\\data\\";
    installation_.ProductInstallationName = "Acme";
    installation_.CurrentUser = "ann";
    machine_.PutFolder("C:\\data\\Acmeann");
  }

  void ExpectLines(std::string_view path, std::string_view text) {
    EXPECT_THAT(machine_.FileBytes(path), Optional(std::string{kUtf16Mark} + ToUtf16(text))) << path;
  }

  CheckedMachine machine_;
  Installation installation_;
  Options options_{machine_.machine(), installation_};
  Trace trace_{options_, machine_.machine().clock};
  Transfer transfer_{machine_.machine(), installation_};
  Progress progress_{machine_.machine(), installation_, transfer_};
};

TEST_F(ReportingFiles, EachWriterHasItsFileAndFormAndAddsNothingButTheLineEnd) {
  machine_.SetNow(ToLocalTime({2026, 11, 14, 9, 5, 7}));
  options_.WriteTrace("one");
  options_.WriteTraceFile("t\xC3\xBCr");
  trace_.User("  short", kShortHourPicture);
  options_.WriteTraceMain("two\r\nlines");
  trace_.Main(" tail", kErrorPicture);
  options_.WriteTraceService("three");
  options_.Writeintofile("C:\\data\\free.log", "t\xC3\xBCr");
  options_.Writeintofile("C:\\data\\free.log", "");
  ExpectLines("C:\\data\\Acmeann\\ScheduleTraceFile.txt",
              "one\r\nt\xC3\xBCr\r\n11-14-2026 9:05:07  short\r\n");
  ExpectLines("C:\\data\\ScheduleTraceFile.txt", "two\r\nlines\r\n11-14-2026 9:05:07:57 tail\r\n");
  ExpectLines("C:\\data\\ScheduleTraceFileService.txt", "three\r\n");
  EXPECT_THAT(machine_.FileBytes("C:\\data\\free.log"), Optional(std::string{"t\xFCr\n\n"}));
}

TEST_F(ReportingFiles, ALineFollowsTheUserAndADeletedFileComesBackWithItsMark) {
  installation_.CurrentUser = "bea";
  options_.WriteTrace("lost, for the folder is missing");
  machine_.PutFolder("C:\\data\\Acmebea");
  options_.WriteTrace("deleted");
  machine_.disk().Erase("C:\\data\\Acmebea\\ScheduleTraceFile.txt");
  options_.WriteTrace("kept");
  ExpectLines("C:\\data\\Acmebea\\ScheduleTraceFile.txt", "kept\r\n");
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

struct SizeCase {
  double bytes;
  const char* point;
  const char* comma;
};

class SizeText : public ReportingFiles, public testing::WithParamInterface<SizeCase> {};

TEST_P(SizeText, HasOneDecimalThatIsCut) {
  EXPECT_EQ(progress_.GetProperSizeValue(GetParam().bytes), GetParam().point);
  machine_.surroundings().locale_texts[kLocaleDecimal] = ",";
  EXPECT_EQ(progress_.GetProperSizeValue(GetParam().bytes), GetParam().comma);
}

INSTANTIATE_TEST_SUITE_P(Progress, SizeText,
                         Values(SizeCase{0, "0.0 B", "0,0 B"}, SizeCase{1000, "1000.0 B", "1000,0 B"},
                                SizeCase{1024, "0.0", "0,0"}, SizeCase{1025, "1.0 KB", "1,0 KB"},
                                SizeCase{1290, "1.2 KB", "1,2 KB"}, SizeCase{1536, "1.5 KB", "1,5 KB"},
                                SizeCase{2047, "1.9 KB", "1,9 KB"}, SizeCase{2048, "2.0 KB", "2,0 KB"},
                                SizeCase{1048576, "1024.0 KB", "1024,0 KB"},
                                SizeCase{1073741824, "1024.0 MB", "1024,0 MB"},
                                SizeCase{5368709119, "4.9 GB", "4,9 GB"},
                                SizeCase{2199023255551.9999, "2048.0 GB", "2048,0 GB"}));

}  // namespace
}  // namespace ondura
