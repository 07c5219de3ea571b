#include "support/checked_machine.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;

TEST(SimulatedTime, ActionsActInOrderAtTheirOwnMomentsWithinOneLongSleep) {
  CheckedMachine house;
  std::vector<std::pair<int, TimeFields>> acts;
  const auto act = [&](int number) {
    return [&, number] { acts.emplace_back(number, ToFields(house.Now())); };
  };
  house.After(90s, act(3));
  house.At(house.Now() + 30s, act(1));
  house.At(house.Now() + 30s, act(2));
  house.After(91s, act(4));
  house.machine().clock.Sleep(90s);
  EXPECT_THAT(acts, ElementsAre(std::pair{1, TimeFields{2026, 11, 14, 12, 30, 30}},
                                std::pair{2, TimeFields{2026, 11, 14, 12, 30, 30}},
                                std::pair{3, TimeFields{2026, 11, 14, 12, 31, 30}}));
  EXPECT_EQ(ToFields(house.Now()), (TimeFields{2026, 11, 14, 12, 31, 30}));
}

}  // namespace
}  // namespace ondura
