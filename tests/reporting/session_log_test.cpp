#include "reporting/session_log.h"

#include <gtest/gtest.h>

#include "support/checked_machine.h"
#include "util/utf16.h"

namespace ondura {
namespace {

using testing::Optional;

const std::string kFolder = "C:\\data\\Acmeann\\Session\\";
const std::string kLog = kFolder + "Scheduled 11-14-2026 12-30-00.txt";

std::string Utf16File(std::string_view text) { return std::string{kUtf16Mark} + ToUtf16(text); }

class SessionLogs : public testing::Test {
 protected:
  SessionLogs() {
    installation_.VirtualPath = "C:\\data\\";
    installation_.ProductInstallationName = "Acme";
    installation_.CurrentUser = "ann";
    machine_.PutFolder("C:\\data\\Acmeann");
  }

  CheckedMachine machine_;
  Installation installation_;
  SessionLog log_{machine_.machine(), installation_};
};

TEST_F(SessionLogs, EachFormReplacesOrAppendsItsBytesAndMakesFolderAndFile) {
  const std::string head = " \r\nUsername: ann\r\nOperation: Scheduled\r\n";
  std::string all = head + "11-14-2026 12-30-00  gr\xC3\xBC\xC3\x9F\r\n";
  log_.WriteBlock(kLog, "gr\xC3\xBC\xC3\x9F", SessionWrite::kAppend);
  EXPECT_THAT(machine_.FileBytes(kLog), Optional(Utf16File(all)));
  log_.WriteQuotaSessionLog(kLog, "Used Quota: 1\r\nfull");
  log_.WriteMessage(kLog, "no password", SessionWrite::kAppend);
  log_.WriteShortMessage(kLog, "no port", SessionWrite::kAppend);
  log_.WriteTimedMessage(kLog, "aborted", SessionWrite::kAppend);
  log_.AppendText(kLog, "Total Time\r\n");
  all += head + "Used Quota: 1\r\nfull\r\n  no password\r\n \r\n  no port\r\n" +
         " \r\n11-14-2026 12-30-00  aborted\r\nTotal Time\r\n";
  EXPECT_THAT(machine_.FileBytes(kLog), Optional(Utf16File(all)));
  log_.WriteHead(kLog, SessionWrite::kReplace);
  EXPECT_THAT(machine_.FileBytes(kLog), Optional(Utf16File(head)));
}

TEST_F(SessionLogs, TheLongNoticesGoIntoAPresentFileOnlyAndTheMissedOneHasItsOwn) {
  EXPECT_EQ(log_.NewPath(), kLog);
  const std::string next = "It has been automatically set to the next frequency 11-15-2026 12:00:00.\r\n";
  const std::string detail =
      "interactive/continuous backup session was in progress or there was a network shutdown.\r\n";
  log_.AppendMissedNotice(kLog, "11-15-2026 12:00:00");
  log_.AppendDisabledNotice(kLog);
  EXPECT_EQ(machine_.FileBytes(kLog), std::nullopt);
  log_.WriteMissedNotice(kLog, "11-15-2026 12:00:00");
  std::string all =
      " \r\nThe Scheduled backup has not been performed. It is possible that an ongoing" + detail + next;
  EXPECT_THAT(machine_.FileBytes(kLog), Optional(Utf16File(all)));
  log_.AppendMissedNotice(kLog, "11-15-2026 12:00:00");
  log_.AppendDisabledNotice(kLog);
  all +=
      " \r\nUsername:  ann\r\nOperation: Scheduled\r\n\r\nThe scheduled backup has not taken been place "
      "because "
      "of an ongoing interactive backup or a network breakdown.It has been automatically set to the next "
      "frequency.\r\n" +
      detail + next + " \r\n11-14-2026 12-30-00Successfully completed the. \r\n";
  EXPECT_THAT(machine_.FileBytes(kLog), Optional(Utf16File(all)));
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
