#include "backupset/remove_duplicate.h"

#include <algorithm>
#include <random>

#include "support/CheckedMachine.h"
#include "text/text.h"

namespace ondura {
namespace {

// The rule as it reads: each entry against every other.
std::vector<std::string> PairByPair(const Machine& machine, std::vector<std::string> list) {
  for (std::size_t first = 0; first < list.size(); ++first) {
    for (std::size_t other = 0; other < list.size();) {
      const bool goes = machine.files.Exists(list[first])
                            ? EqualsIgnoringCase(Trim(list[other]), Trim(list[first]))
                            : StartsWithIgnoringCase(list[other], list[first]);
      if (other == first || !goes) {
        ++other;
        continue;
      }
      list.erase(list.begin() + static_cast<std::ptrdiff_t>(other));
      if (other < first) --first;
    }
  }
  return list;
}

TEST(RemoveDuplicate, AgreesWithThePairwiseWalkOnRandomLists) {
  std::mt19937 random{11};
  CheckedMachine machine;
  machine.PutFile("C:\\a", "a file whose name begins others");
  machine.PutFile("C:\\d\\f", "a file");
  const std::vector<std::string> paths{"C:\\a",    "c:\\A",     " C:\\a ",    "C:\\ab",  "C:\\d",
                                       "C:\\D\\",  "C:\\d\\f",  "C:\\D\\F",   "C:\\d\\", "C:\\é",
                                       "C:\\É\\x", "C:\\d\\f ", "C:\\data\\x"};
  for (int round = 0; round < 2000; ++round) {
    std::vector<std::string> list(random() % 9);
    for (auto& path : list) path = paths[random() % paths.size()];
    std::vector<std::string> cleaned = list;
    RemoveDuplicate(machine.machine(), cleaned);
    ASSERT_EQ(cleaned, PairByPair(machine.machine(), list)) << Join(list, "|");
  }
}

TEST(RemoveDuplicate, GrowsWithTheListAndLetsOthersIn) {
  CheckedMachine machine;
  std::vector<std::string> list(60'001, "C:\\same");
  for (std::size_t i = 0; i < 60'000; ++i) list[i] += "\\" + std::to_string(100'000 + i % 30'000);
  RemoveDuplicate(machine.machine(), list);
  EXPECT_THAT(list, testing::ElementsAre("C:\\same"));
  EXPECT_EQ(machine.Elapsed().count(), 2'000);
  EXPECT_EQ(machine.CallsMatching("Files.Exists").size(), 30'001U) << "one look for each that stays";
}

}  // namespace
}  // namespace ondura
