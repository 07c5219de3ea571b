// What each answer of the engine makes of a job: every row is one whole job.

#include "scenarios/House.h"

namespace ondura {
namespace {

using testing::ElementsAre;

constexpr const char* kViewLog = "View the log to know the status of the backup job.\r\n";
constexpr const char* kUnable =
    "Unable to perform scheduled backup. Possible reasons include:\r\n1. No internet connection.\r\n2. "
    "Firewall has denied access to the Ondura application.";
constexpr const char* kNothingChanged =
    "Please note that all the items selected for backup (from your backup set) have already been backed up "
    "and the files have not changed since your last backup.";
constexpr const char* kBadEncryption =
    "You have not entered a valid encryption password. Due to this, the backup operation could not be "
    "commenced.";
constexpr const char* kBadPassword =
    "Backup failed. The possible reasons may include: \r\nIncorrect password was entered.";
constexpr const char* kProxy =
    "Backup Failed. You might be behind a proxy server.  Recheck the proxy ip address/port number or if the "
    "proxy server is enabled to accept connections. You might want to check with your systems administrator.";
constexpr const char* kAllExcluded =
    "Please note that the file(s)/folder(s) you have chosen to backup have been excluded from backup in the "
    "'Backup' pane.";
constexpr const char* kLocked =
    "The user data is locked due to a recent aborted session. Please try after a few minutes.";
constexpr const char* kElsewhere =
    "Backup is in progress from the ip address 10.1.2.3  Wait till it is complete to begin the backup on "
    "this "
    "machine.";
constexpr const char* kFailed = "Backup has failed.\r\n";
constexpr const char* kCancelled =
    "All your files/folders could not be backed up as the scheduled job was manually canceled.\r\n";

struct ResultCase {
  std::string story;
  std::vector<int> results;
  std::string code, text, dll_status, failure_days;
  std::string sentence = kViewLog, error_file = "<none>";
  std::string status = "";  // the result where empty
};

TEST(EngineResultStory, TheResultOfTheTransferEndsTheJobAsItsRowSays) {
  for (const ResultCase& row :
       {ResultCase{"done", {402}, "2", "", "4", "0"},
        ResultCase{"all up to date", {426}, "4", kNothingChanged, "3", "0"},
        ResultCase{"no result, an abnormal end, an unknown number", {0, -1, -77}, "4", "", "4", "4"},
        ResultCase{"a wrong account password", {-403}, "4", "", "4", "4", "", kFailed},
        ResultCase{"no connection, or a wrong encryption password, which loses its own text",
                   {-404, -405, -504, -12009},
                   "3",
                   kUnable,
                   "3",
                   "5"},
        ResultCase{"nothing selected",
                   {-409},
                   "4",
                   "Please select one or more file(s)/folder(s) to backup.",
                   "3",
                   "0",
                   kViewLog,
                   kFailed},
        ResultCase{"nothing new", {-411, -425}, "2", kNothingChanged, "3", "0"},
        ResultCase{"cancelled, or cancelled by the server", {-414, -424}, "4", "", "3", "0", kCancelled},
        ResultCase{"cannot connect", {-416}, "3", kUnable, "3", "5", kViewLog, kFailed},
        ResultCase{"nothing new keeps the engine state", {-418}, "2", kNothingChanged, "4", "0"},
        ResultCase{"all excluded", {-426}, "4", kAllExcluded, "3", "0"},
        ResultCase{"account data locked", {-429}, "4", kLocked, "3", "5", kViewLog, "<none>", "1"},
        ResultCase{"runs on another machine", {-434}, "4", kElsewhere, "3", "5", kViewLog, "<none>", "1"},
        ResultCase{"some files failed",
                   {-1001},
                   "4",
                   "One or More files could not be backed up.",
                   "3",
                   "0",
                   kViewLog,
                   kFailed}}) {
    for (const int result : row.results) {
      SCOPED_TRACE(row.story + " " + std::to_string(result));
      MailingHouse house;
      house.WriteProfile("BackupStatus", "BackupFailureDays", "4");
      house.WriteProfile("Server", "MultipleIP", "10.1.2.3");
      house.OnCommand(51, [&](ProgramRun& run) { result == 0 ? run.Exit(3) : house.WriteResult(result); });
      house.Tick();
      const auto mail = house.LastMail();
      ASSERT_EQ(mail.size(), 11U);
      EXPECT_EQ(mail.at(2), row.code);
      EXPECT_EQ(mail.at(5), row.text);
      EXPECT_EQ(house.StatusAfterJob(), row.status.empty() ? std::to_string(result) : row.status);
      EXPECT_EQ(house.Status("DLLStatus"), row.dll_status);
      EXPECT_EQ(house.Status("BackupFailureDays"), row.failure_days);
      EXPECT_EQ(house.Text("SchStatus.txt"), row.sentence);
      EXPECT_EQ(house.Text("SchStatusError.txt"), row.error_file);
      EXPECT_EQ(house.NextTime(), House::kTomorrow);
    }
  }
}

struct EarlyCase {
  std::string story;
  int command, result;
  std::string code, text, error_file;
  bool clears_password;
  std::size_t engine_runs;
};

TEST(EngineResultStory, ACommandBeforeTheTransferEndsTheJob) {
  for (const EarlyCase& row :
       {EarlyCase{"no connection after ten tries", 24, -416, "3", kUnable, kFailed, false, 10},
        EarlyCase{"proxy failure after ten tries", 24, -12008, "3", kProxy, "<none>", false, 10},
        EarlyCase{"a wrong password is cleared at once", 24, -403, "3", kBadPassword, kFailed, true, 1},
        EarlyCase{"a wrong encryption password", 24, -404, "3", kBadEncryption, "<none>", false, 1},
        EarlyCase{"no port information", 24, -40, "3", "Unable to get port information.", "<none>", false, 1},
        EarlyCase{"a damaged installation names the product", 24, -431, "3",
                  "Install Ondura again to enable the application to work correctly", "<none>", false, 1},
        EarlyCase{"no connection passes the engine's result out", 28, -416, "-416",
                  "Connection Failed. Unable to connect to the server. Try later.", kFailed, false, 2},
        EarlyCase{"a wrong password is cleared and shown", 28, -403, "-403", kBadPassword, "<none>", true, 2},
        EarlyCase{"proxy failure", 28, -12010, "-12010", kProxy, "<none>", false, 2}}) {
    SCOPED_TRACE(row.story);
    MailingHouse house;
    house.WriteMethod("1");
    house.Answer(row.command, row.result);
    house.Tick();
    EXPECT_EQ(house.Commands().size(), row.engine_runs);
    const auto mail = house.LastMail();
    ASSERT_EQ(mail.size(), 11U);
    EXPECT_EQ(mail.at(2), row.code);
    EXPECT_EQ(mail.at(5), row.text);
    EXPECT_EQ(house.Text("SchStatusError.txt"), row.error_file);
    EXPECT_EQ(house.Status("BackupFailureDays"), "1");
    EXPECT_EQ(house.Service().transfer().Trf_ReadUserProfile("password").empty(), row.clears_password);
    EXPECT_EQ(house.SessionFiles().size(), 1U);
    const ShownMessage box{
        "Logout from the account (ann) and then login with your new Password and attempt the operation "
        "again.",
        "Ondura failure", MessageIcon::kStop};
    const bool is_shown = row.clears_password && row.command == 28;
    EXPECT_EQ(house.machine.surroundings().messages, std::vector<ShownMessage>(is_shown ? 1 : 0, box));
  }
}

TEST(EngineResultStory, AnEndOfTheScheduleRemovesItWithoutCloseUpOrMail) {
  for (const int result : {-507, -514}) {
    MailingHouse house;
    house.Answer(24, result);
    house.Tick();
    EXPECT_EQ(house.Bytes("scheduleData.txt"), "<none>");
    EXPECT_TRUE(house.LastMail().empty());
    EXPECT_TRUE(house.SessionFiles().empty());
    EXPECT_EQ(house.Shared("Started"), "1");
    house.Tick();
    EXPECT_EQ(house.Shared("Started"), "0");
  }
}

TEST(EngineResultStory, AFailedSizeRefreshIsWhatStatusShows) {
  MailingHouse house;
  house.Answer(16, -416);
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16, 16, 16, 16, 16));
  EXPECT_EQ(house.StatusAfterJob(), "-416");
}

TEST(EngineResultStory, TheArgumentOfTheTransferGrowsByOneStampAJob) {
  MailingHouse house;
  std::vector<std::string> arguments;
  house.OnCommand(51, [&](ProgramRun& run) {
    arguments.push_back(run.parameters());
    house.WriteResult(402);
  });
  house.Tick();
  house.machine.AdvanceTo(ToLocalTime({2026, 11, 15, 12, 30, 0}));
  house.Tick();
  ASSERT_EQ(arguments.size(), 2U);
  EXPECT_EQ(arguments[0].substr(0, 5), " 51<\\");
  EXPECT_TRUE(arguments[1].starts_with(arguments[0].substr(0, arguments[0].size() - 1) + "\\"));
}

}  // namespace
}  // namespace ondura
