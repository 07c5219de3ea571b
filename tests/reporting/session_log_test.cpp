#include "reporting/SessionLog.h"

#include "ReportingHouse.h"

namespace ondura {
namespace {

const std::string kFolder = "C:\\data\\Acmeann\\Session\\";
const std::string kScheduled = kFolder + "Scheduled 11-14-2026 12-30-00.txt";

class SessionLogs : public ReportingHouse {
 protected:
  SessionLogs() { machine_.SetNow(SimulatedMachine::kDefaultStart); }

  SessionLog log_{machine_.machine(), installation_};
};

TEST_F(SessionLogs, EachFormReplacesOrAppendsItsBytesAndMakesFolderAndFile) {
  const std::string head = " \r\nUsername: ann\r\nOperation: Scheduled\r\n";
  std::string all = head + "11-14-2026 12-30-00  gr\xC3\xBC\xC3\x9F\r\n";
  log_.WriteBlock(kScheduled, "gr\xC3\xBC\xC3\x9F", SessionWrite::kAppend);
  ExpectUtf16(kScheduled, all);
  log_.WriteQuotaSessionLog(kScheduled, "Used Quota: 1\r\nfull");
  log_.WriteMessage(kScheduled, "no password", SessionWrite::kAppend);
  log_.WriteShortMessage(kScheduled, "no port", SessionWrite::kAppend);
  log_.WriteTimedMessage(kScheduled, "aborted", SessionWrite::kAppend);
  log_.AppendText(kScheduled, "Total Time\r\n");
  all += head + "Used Quota: 1\r\nfull\r\n  no password\r\n \r\n  no port\r\n" +
         " \r\n11-14-2026 12-30-00  aborted\r\nTotal Time\r\n";
  ExpectUtf16(kScheduled, all);
  log_.WriteHead(kScheduled, SessionWrite::kReplace);
  ExpectUtf16(kScheduled, head);
}

TEST_F(SessionLogs, TheLongNoticesGoIntoAPresentFileOnlyAndTheMissedOneHasItsOwn) {
  EXPECT_EQ(log_.NewPath(), kScheduled);
  const std::string next = "It has been automatically set to the next frequency 11-15-2026 12:00:00.\r\n";
  const std::string detail =
      "interactive/continuous backup session was in progress or there was a network shutdown.\r\n";
  log_.AppendMissedNotice(kScheduled, "11-15-2026 12:00:00");
  log_.AppendDisabledNotice(kScheduled);
  EXPECT_EQ(machine_.FileBytes(kScheduled), std::nullopt);
  log_.WriteMissedNotice(kScheduled, "11-15-2026 12:00:00");
  std::string all =
      " \r\nThe Scheduled backup has not been performed. It is possible that an ongoing" + detail + next;
  ExpectUtf16(kScheduled, all);
  log_.AppendMissedNotice(kScheduled, "11-15-2026 12:00:00");
  log_.AppendDisabledNotice(kScheduled);
  all +=
      " \r\nUsername:  ann\r\nOperation: Scheduled\r\n\r\nThe scheduled backup has not taken been place "
      "because "
      "of an ongoing interactive backup or a network breakdown.It has been automatically set to the next "
      "frequency.\r\n" +
      detail + next + " \r\n11-14-2026 12-30-00Successfully completed the. \r\n";
  ExpectUtf16(kScheduled, all);
}

TEST_F(SessionLogs, TheLatestLogIsTheNewestScheduledOneOfTodayAndATieKeepsTheFirst) {
  constexpr TimeFields kNoon{2026, 11, 14, 12, 0, 0};
  const auto put = [&](const std::string& name, const TimeFields& modified) {
    machine_.PutFile(kFolder + name, "x");
    machine_.disk().SetModified(kFolder + name, ToLocalTime(modified));
  };
  const auto latest = [&] { return log_.FindLatestSessionFile(kFolder); };
  EXPECT_EQ(latest(), "") << "no folder yet";
  machine_.PutFolder(kFolder + "Scheduled as a folder");
  for (const char* name : {"scheduled 9", "ScheduledX 1", "Schedul 1234", "Scheduled.txt12", "Scheduled "}) {
    put(name, kNoon);
  }
  put("Scheduled yesterday", {2026, 11, 13, 23, 59, 59});
  EXPECT_EQ(latest(), "");
  put("Scheduled 3", {2026, 11, 14, 0, 0, 0});
  EXPECT_EQ(latest(), kFolder + "Scheduled 3") << "the first second of today counts";
  put("Scheduled 1", kNoon);
  put("Scheduled 2", kNoon);
  EXPECT_EQ(latest(), kFolder + "Scheduled 1");
  machine_.disk().SetListOrder(ListOrder::kReversed);
  EXPECT_EQ(latest(), kFolder + "Scheduled 2");
  put("Scheduled 4", {2026, 11, 15, 1, 0, 0});
  EXPECT_EQ(latest(), kFolder + "Scheduled 4") << "a time to come counts";
}

}  // namespace
}  // namespace ondura
