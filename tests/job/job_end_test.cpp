// Cut-off time, quota and the texts and keys of a job's end.

#include <gmock/gmock.h>

#include "job/Quota.h"
#include "job/TransferWait.h"
#include "job_house.h"

namespace ondura {
namespace {

TEST(HourMinuteText, CutsTheMinutesByTheLengthOfTheTime) {
  using Row = std::tuple<const char*, std::optional<std::string>>;
  for (const auto& [text, want] :
       {Row{"01-31-2026 09:05:00", "0905"}, Row{"01-31-2026 23:59:59", "2359"},
        Row{"01-31-2026 9:05:00", "90"}, Row{"09:05:00", "0905"}, Row{"x 9:5:00", "9"},
        Row{"x 09:05", std::nullopt}, Row{"01-31-2026", std::nullopt}, Row{"x 120000", std::nullopt},
        Row{"", std::nullopt}}) {
    EXPECT_EQ(HourMinuteText(text), want) << text;
  }
}

TEST(Quota, StartsBelowZeroAndTakesTheMarkerForOneMoreGigabyte) {
  using Row = std::tuple<std::string, std::string, std::string, bool>;
  for (const auto& [used, max, trace, is_exceeded] :
       {Row{"", "", "Used Quota : -1, Max Quota: 0", false},
        Row{" 12 ", "", "Used Quota : 12, Max Quota: 0", true},
        Row{"12", "12", "Used Quota : 12, Max Quota: 12", false},
        Row{"13", "12", "Used Quota : 13, Max Quota: 12", true},
        Row{"5368709120", " 1 ", "Used Quota : 5368709120, Max Quota: 6442450944", false},
        Row{"much", "more", "Used Quota : -1, Max Quota: 0", false}}) {
    JobHouse house;
    house.SetProfile("QuotaStatus", "Used", used);
    house.SetProfile("QuotaStatus", "Max", max);
    const Quota quota = ReadQuotaOutputFile(house.store);
    EXPECT_EQ(QuotaTrace(quota), trace);
    EXPECT_EQ(quota.IsExceeded(), is_exceeded) << trace;
  }
}

TEST(StatusWindow, OpensForTheDefaultUsersJobAndForAMessageToo) {
  using Row = std::tuple<const char*, const char*, const char*, double, const char*, const char*>;
  for (const auto& [story, notification, default_user, code, window, window_of_message] :
       {Row{"wanted", "1", "ann", 1, "1", "1"}, Row{"wanted where nothing is said", "", "ann", 402, "1", "1"},
        Row{"not the default user's", "1", "bob", 1, "as it was", "as it was"},
        Row{"switched off", "0", "ann", 1, "0", "as it was"},
        Row{"the quota overrides the switch", "0", "ann", -432, "1", "as it was"},
        Row{"but for another user", "0", "bob", -432, "as it was", "as it was"}}) {
    SCOPED_TRACE(story);
    for (const bool is_message : {false, true}) {
      JobHouse house;
      house.transfer.Trf_WriteUserNameProfile("Scheduled", "ann ");
      house.transfer.Trf_WriteUserNameRegistryProfile("Default User name",
                                                      house.ciphers.ShiftEncode(default_user));
      house.SetProfile("BackupStatus", "DesktopNotification", notification);
      house.SetProfile("BackupStatus", "StatusWindow", "as it was");
      JobEndStatus& status = house.job.end_status;
      is_message ? status.WriteJobMessage("text", JobEndStatus::Target::kStatusFile, 1)
                 : status.WriteJobEndStatus(EngineResult{code});
      EXPECT_EQ(house.Status("StatusWindow"), is_message ? window_of_message : window);
      EXPECT_EQ(house.Status("StatusMessageIndicaton"), !is_message && code == -432 ? "2" : "1");
    }
  }
}

TEST(JobMessage, GoesIntoTheFileAskedForAndBeginsALog) {
  for (const bool to_status : {true, false}) {
    JobHouse house;
    house.job.end_status.WriteJobMessage(
        "No dump.", to_status ? JobEndStatus::Target::kStatusFile : JobEndStatus::Target::kErrorFile, 2);
    EXPECT_EQ(house.Text("SchStatus.txt"), to_status ? "No dump.\r\n" : "<none>");
    EXPECT_EQ(house.Text("SchStatusError.txt"), to_status ? "<none>" : "No dump.\r\n");
    EXPECT_EQ(house.Status("DLLStatus") + " " + house.Status("StatusMessageIndicaton"), "3 2");
    EXPECT_EQ(house.Status("SchEndTime"), "11-14-2026 12:30:00");
    EXPECT_EQ(house.job.state.run.session_path, house.UserFile("Session\\Scheduled 11-14-2026 12-30-00.txt"));
    EXPECT_EQ(house.Text("Session\\Scheduled 11-14-2026 12-30-00.txt"),
              " \r\nUsername: ann\r\nOperation: Scheduled\r\n");
  }
}

}  // namespace
}  // namespace ondura
