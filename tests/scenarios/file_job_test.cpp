// Whole file jobs from the tick to the next occurrence.

#include <gmock/gmock.h>

#include "scenarios/house.h"

namespace ondura {
namespace {

using testing::ElementsAre;

TEST(FileJobStory, ADueOccurrenceRunsOnceAndMovesOn) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily("11-14-2026 12:30:00")});
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_EQ(house.Bytes("scheduleData.txt"),
            "0\r\n1\b\bNightly\b\b11-15-2026 12:30:00\b\b12:30\b\b0\b\bevery day\b\b\b\b0\b\b0\b\b"
            "202611151230\b\b6\b\b1111111\r\n");
  EXPECT_EQ(house.Text("SchStatus.txt"), "View the log to know the status of the backup job.\r\n");
  EXPECT_EQ(house.Status("Status"), "4");
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

}  // namespace
}  // namespace ondura
