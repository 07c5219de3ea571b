#include <gtest/gtest.h>

#include "Journal.h"
#include "machines/simulated/SimulatedMachine.h"
#include "util/date_text.h"
#include "util/iso_time.h"

namespace ondura {
namespace {

LocalTime Time(std::string_view text) { return ParseFixedDate(text).value(); }

JournalEntry Whole() {
  return {.at = Time("11-24-2026 22:05:30"),
          .event = JournalEvent::kOutcome,
          .host = "service",
          .user = "ann \"quoted\" \xC3\xA4",
          .kind = "files",
          .name = "nightly",
          .due = Time("11-24-2026 22:00:00"),
          .outcome = Outcome::kIncomplete,
          .code = -1001,
          .words = "2 files could not be read",
          .began = Time("11-24-2026 22:00:10"),
          .ended = Time("11-24-2026 22:05:20"),
          .files = 12,
          .bytes = 5'000'000'000,
          .because = {{"units_late", "10"}, {"STARTMISSEDSCH", "0"}}};
}

TEST(Journal, GivesBackWhatWasNotedAndLosesNoLineForOneThatWasCutShort) {
  SimulatedMachine simulated{Time("11-24-2026 22:05:30")};
  Installation installation;
  installation.VirtualPath = "C:\\Data\\";
  simulated.PutFolder("C:\\Data");
  JournalEntry october = Whole();
  october.at = Time("10-31-2026 23:59:59");
  EXPECT_TRUE(Journal(simulated.machine(), installation).Append(october));
  Journal journal(simulated.machine(), installation);
  EXPECT_TRUE(journal.Append(Whole()));
  const std::string path = "C:\\Data\\Journal\\2026-11.jsonl";
  const std::string line = simulated.FileBytes(path).value();
  // The power went in the middle of a line, once while the host was away and once under its hands.
  simulated.PutFile(path, line + line.substr(0, 40));
  Journal later(simulated.machine(), installation);
  EXPECT_TRUE(later.Append(Whole()));
  simulated.Fail("Files.Append*");
  EXPECT_FALSE(later.Append(Whole()));
  EXPECT_TRUE(later.Append({.at = Time("11-25-2026 1:00:00"), .event = JournalEvent::kHostWaits}));
  EXPECT_EQ(later.ReadAll().size(), 4U);
  const auto november = later.Read(Time("11-01-2026"), Time("11-25-2026"));
  EXPECT_EQ(november, (std::vector{Whole(), Whole()}));
  EXPECT_EQ(later.Read(october.at, Time("11-01-2026")), std::vector{october});
}

TEST(Journal, TimesCarryTheOffsetOfTheirDay) {
  SimulatedMachine simulated;
  simulated.surroundings().utc_offset = [](LocalTime time) {
    return std::chrono::minutes{time < Time("10-25-2026 3:00:00") ? -120 : 345};
  };
  Clock& clock = simulated.machine().clock;
  EXPECT_EQ(IsoTime(clock, Time("10-25-2026 2:59:59")), "2026-10-25T02:59:59-02:00");
  EXPECT_EQ(IsoTime(clock, Time("10-25-2026 3:00:00")), "2026-10-25T03:00:00+05:45");
  for (const char* text : {"2026-10-25T03:00:00+05:45", "2026-10-25 03:00", "2026-10-25T03:00Z"}) {
    EXPECT_EQ(ParseIsoTime(text), Time("10-25-2026 3:00:00")) << text;
  }
  EXPECT_EQ(ParseIsoTime("2026-10-25"), Time("10-25-2026"));
  for (const char* text : {"", "2026-10", "2026-13-25", "2026-10-25T3:00", "2026-10-25x", "abcd-10-25"}) {
    EXPECT_EQ(ParseIsoTime(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace ondura
