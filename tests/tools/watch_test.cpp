#include <sys/resource.h>

#include <filesystem>

#include "tools/ToolHouse.h"

namespace ondura::testing {
namespace {

using namespace std::string_literals;
using ::testing::AllOf;
using ::testing::HasSubstr;

std::string Utf16(const std::string& ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char character : ascii) bytes.append({character, '\0'});
  return bytes;
}

TEST(ToolSelect, WritesPathsAsTheJobReadsThem) {
  const AnnHouse house;
  ASSERT_EQ(house.Run("select ann 'd:\\DOCUMENTS' D:/notes.txt").exit, 0);
  ASSERT_EQ(house.Run("select ann 'D:\\documents\\' 'D:\\'").exit, 0);
  EXPECT_EQ(house.OfAnn("atbkupfolderlist.txt"), Utf16("D:\\Documents\\\r\nD:\\notes.txt\r\nD:\\\r\n"));
  ASSERT_EQ(house.Run("select ann --remove 'd:\\documents'").exit, 0);
  EXPECT_EQ(house.Run("select ann --list").out, "D:\\notes.txt\nD:\\\n");
  ASSERT_EQ(house.Run("select ann --remove 'D:\\NOTES.txt' 'D:\\'").exit, 0);
  EXPECT_FALSE(std::filesystem::exists(house.root() + "/C/ProgramData/Ondura/Onduraann/atbkupfolderlist.txt"))
      << "an empty file would count as a selection";
}

TEST(ToolSelect, AddsNothingWhenAPathIsMissingOrEndsInABlankAndExcludesFilesApart) {
  const AnnHouse house;
  house.Put("C/blank ", "x");
  for (const char* path : {"D:\\gone", "C:\\blank "}) {  // whoever reads the list trims
    EXPECT_EQ(house.Run("select ann 'D:\\notes.txt' " + Quoted(path)).exit, 1);
  }
  EXPECT_EQ(house.Run("select ann --list --json").out, "[]\n");
  ASSERT_EQ(house.Run("exclude ann 'D:\\Documents' 'D:\\notes.txt'").exit, 0);
  EXPECT_EQ(house.OfAnn("atbkupExcludelist.txt"), Utf16("D:\\Documents\\\r\n"));
  EXPECT_EQ(house.OfAnn("atbkupExcludeFilePath.txt"), Utf16("D:\\notes.txt\r\n"));
  EXPECT_EQ(house.Run("exclude ann --list").out, "D:\\Documents\\\nD:\\notes.txt\n");
  for (const auto& [path, says] : {std::pair{"D:\\Later", "left out as a folder"},
                                   {"D:\\.cache\\", "left out as a folder"},
                                   {"D:\\later.tmp", "left out as a file"}}) {
    EXPECT_THAT(house.Run("exclude ann " + Quoted(path)).err, HasSubstr(says)) << path;
  }
  EXPECT_EQ(house.OfAnn("atbkupExcludelist.txt"),
            Utf16("D:\\Documents\\\r\nD:\\Later\\\r\nD:\\.cache\\\r\n"));
}

TEST(ToolSelect, RemarksWhatIsSelectedTwice) {
  const AnnHouse house;
  EXPECT_EQ(house.Run("select ann 'D:\\Documents'").err, "");
  EXPECT_THAT(house.Run("select ann 'd:\\'").err, HasSubstr("D:\\Documents\\ lies in D:\\"));
  EXPECT_THAT(house.Run("select ann 'D:\\notes.txt'").err, HasSubstr("D:\\notes.txt lies in D:\\"));
  EXPECT_THAT(house.Run("select ann 'My Computer'").err, HasSubstr("D:\\ lies in My Computer"));
}

TEST(ToolState, SaysWhatTheFilesMean) {
  const AnnHouse house;
  for (const auto& [story, status, header, state, words] :
       {std::tuple{"nothing going on", "0", "0", "idle", "idle"},
        {"closed up behind a job", "4", "0", "idle", "idle"},
        {"a job of the header's kind", "1", "2", "running", "a sql backup is running"},
        {"a job that was cut off", "1", "0", "interrupted",
         "a job began and was cut off; the service clears this when it starts"},
        {"an interactive backup", "2", "0", "interactive", "an interactive backup is running"},
        {"a stop not yet seen by the job", "5", "1", "stopping", "a stop has been asked for"},
        {"a failed job", "3", "0", "idle", "idle; the last job failed or was stopped"}}) {
    house.Set("Status", status);
    house.PutForAnn("scheduleData.txt", header + "\r\n"s);
    EXPECT_THAT(house.Run("status ann --json").out, HasSubstr("\"state\": \""s + state + "\"")) << story;
    EXPECT_THAT(house.Run("status").out, HasSubstr("state     "s + words + "\n")) << story;
  }
}

TEST(ToolStatus, TellsHowTheLastJobEndedAndWhatIsNext) {
  const AnnHouse house;
  house.Run("schedule add ann --at '2090-11-14 06:05' --repeat daily");
  for (const auto& [key, value] : {std::pair{"RetValue", "-416"},
                                   {"SchEndTime", "11-14-2026 12:31:08"},
                                   {"BackupFailureDays", "3"},
                                   {"Used", "1536"},
                                   {"Max", "2147483648"}}) {
    house.Set(key, value);
  }
  house.PutForAnn("SchStatus.txt", Utf16("View the log to know the status of the backup job.\r\n"));
  house.PutForAnn("BackupProgress.ini", "[BackupProgressInfo]\r\nPercentage=42\r\n");
  EXPECT_EQ(house.Run("status").out,
            "ann\n"
            "  state     idle\n"
            "            Percentage: 42\n"
            "  last job  no connection to the server (-416), ended 11-14-2026 12:31:08\n"
            "  says      View the log to know the status of the backup job.\n"
            "  failures  3 in a row\n"
            "  next      2090-11-14 06:05, files\n"
            "  warning   the next run is more than 32 days ahead; look at the clock and at the schedule\n"
            "  quota     1.5 KB of 2.0 GB used\n");
  EXPECT_THAT(house.Run("status --json").out,
              AllOf(HasSubstr("\"in_charge\": \"service\""), HasSubstr("\"code\": -416"),
                    HasSubstr("\"time\": \"2090-11-14 06:05\""), HasSubstr("\"Percentage\": \"42\"")));
}

TEST(ToolStatus, SaysWhatCameOfAnEngineWithoutAResultAndWhatTheHostHasNoted) {
  const AnnHouse house;
  for (const auto& [status, end_time, words] :
       {std::tuple{"0", "", "last job  no result yet (0)\n"},
        {"1", "", "the job was cut off before it had a result (0)\n"},
        {"4", "11-14-2026 12:31:08", "the engine ended without a result (0), ended 11-14"}}) {
    for (const auto& [key, value] :
         {std::pair{"RetValue", "0"}, {"Status", status}, {"SchEndTime", end_time}}) {
      house.Set(key, value);
    }
    EXPECT_THAT(house.Run("status").out, HasSubstr(words));
  }
  house.Put("C/ProgramData/Ondura/HostState.ini",
            "[Host]\r\nWaits=No pass: no engine.\r\n[EngineEnded]\r\nann=it ran too long\r\n");
  EXPECT_THAT(house.Run("status").out, AllOf(HasSubstr("host: No pass: no engine.\nann\n"),
                                             HasSubstr("  host      it ran too long\n")));
}

// Processor time of the programs that were run.
double SpentSeconds() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  return static_cast<double>(usage.ru_utime.tv_sec) + static_cast<double>(usage.ru_utime.tv_usec) / 1e6;
}

TEST(ToolStatus, TakesAsLongForEachOfManyUsersAsForEachOfAFew) {
  const AnnHouse house;
  std::vector<double> seconds;
  for (const int users : {500, 4000}) {
    std::string list;
    for (int i = 0; i < users; ++i) list += "user" + std::to_string(i) + ";";
    house.Put("C/ProgramData/Ondura/userlist.ini", list + "\r\n");
    const double before = SpentSeconds();
    ASSERT_EQ(house.Run("status").exit, 0);
    seconds.push_back(SpentSeconds() - before);
  }
  EXPECT_LT(seconds[1], seconds[0] * 20) << "8 times as many";
}

TEST(ToolLog, ShowsTheNewestUnlessAnotherIsNamed) {
  const AnnHouse house;
  house.PutForAnn("Session/Scheduled 11-14-2026 12-30-00.txt", Utf16("older\r\n"));
  house.PutForAnn("Session/Scheduled 01-01-2027 00-00-00.txt", Utf16("newer\r\n"));
  namespace fs = std::filesystem;
  const fs::path session = house.root() + "/C/ProgramData/Ondura/Onduraann/Session";
  fs::last_write_time(session / "Scheduled 11-14-2026 12-30-00.txt",
                      fs::file_time_type::clock::now() - std::chrono::hours{24});
  EXPECT_EQ(house.Run("log ann").out, "Scheduled 01-01-2027 00-00-00.txt\nnewer\n");
  EXPECT_THAT(house.Run("log ann --name 'Scheduled 11-14-2026 12-30-00.txt'").out, HasSubstr("older\n"));
  EXPECT_EQ(house.Run("log ann --name '..\\Ondura.ini'").exit, 1) << "not a way to read other files";
}

}  // namespace
}  // namespace ondura::testing
