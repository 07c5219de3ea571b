#include "support/CheckedMachine.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

TEST(CallJournal, APatternDecidesWhichCallsAreMeant) {
  for (const auto& [story, pattern, call, matches] :
       {std::tuple{"a beginning is enough", "Files.Read", "Files.ReadHead C:\\x", true},
        {"the blank ends the method", "Files.Read ", "Files.ReadHead C:\\x", false},
        {"letter case does not count", "files.read c:\\X", "Files.Read C:\\x", true},
        {"a longer name is met too", "Files.Read C:\\x", "Files.Read C:\\xy", true},
        {"unless the end is asked for", "Files.Read C:\\x$", "Files.Read C:\\xy", false},
        {"the end is met exactly", "Files.Read C:\\x$", "Files.Read C:\\x", true},
        {"a star stands for anything", "*] Started=1$", "ProfileFiles.WriteString f [T] Started=1", true},
        {"a star tries every place", "*a*b$", "aab ab", true},
        {"a call shorter than the pattern", "Files.Read C:", "Files.Read", false}}) {
    EXPECT_EQ(MatchesCall(pattern, call), matches) << story;
  }
}

TEST(CallJournal, RefusesToAnswerFromARecordThatIsNotWhole) {
  CheckedMachine house;
  for (std::size_t call = 0; call <= CallJournal::kLimit; ++call) house.machine().internet.IsConnected();
  EXPECT_THROW(house.Calls(), std::runtime_error);
  house.ClearCalls();
  EXPECT_THAT(house.Calls(), IsEmpty());
}

TEST(Faults, AFaultThatNoCallMetIsTold) {
  SimulatedMachine house;
  house.Fail("Files.Read C:\\never.txt");
  house.Fail("Internet.IsConnected", CallJournal::kAlways);
  house.machine().internet.IsConnected();
  EXPECT_THAT(house.UnfiredFaults(), ElementsAre("Files.Read C:\\never.txt"));
}

TEST(Faults, ATornWriteLeavesItsFirstHalfAndWhatItWasToReplace) {
  CheckedMachine house;
  for (const char* bytes : {"0123456789", "abcdefghij"}) {
    house.journal().Tear("Files.Write C:\\x.txt");
    EXPECT_FALSE(house.machine().files.Write("C:\\x.txt", bytes, IfPresent::kReplace));
    EXPECT_THAT(house.FileBytes("C:\\x.txt"), Optional(std::string("01234"))) << bytes;
  }
  house.journal().Tear("FileWriter.Append");
  EXPECT_THAT(house.FileBytes("C:\\x.txt"), Optional(std::string("01234")));
  EXPECT_FALSE(house.machine().files.OpenAppender("C:\\x.txt", IfMissing::kFail)->Append("abcd"));
  EXPECT_THAT(house.FileBytes("C:\\x.txt"), Optional(std::string("01234ab")));
}

TEST(Faults, ASeedDecidesTheSameFailuresEveryTime) {
  const auto answers = [](std::uint64_t seed) {
    CheckedMachine house;
    house.journal().RandomFaults(seed, 0.5);
    std::string text;
    for (int call = 0; call < 64; ++call) text += house.machine().internet.IsConnected() ? '1' : '0';
    return text;
  };
  EXPECT_EQ(answers(1), answers(1));
  EXPECT_NE(answers(1), answers(2));
  EXPECT_NE(answers(1).find('1'), std::string::npos);
  EXPECT_NE(answers(1).find('0'), std::string::npos);
}

TEST(Faults, APowerCutLeavesWhatHadReachedTheDiskAndTheNextComponentGoesOn) {
  for (const auto& [story, moment, at, first, second] :
       {std::tuple{"before the first write", CutMoment::kBeforeEffect, 1U, "----", "----"},
        {"behind the first write", CutMoment::kAfterEffect, 1U, "aaaa", "----"},
        {"before the second write", CutMoment::kBeforeEffect, 2U, "aaaa", "----"},
        {"within the second write", CutMoment::kTorn, 2U, "aaaa", "----"}}) {
    CheckedMachine house;
    house.PutFile("C:\\1.txt", "----");
    house.PutFile("C:\\2.txt", "----");
    const auto component = [&] {
      house.machine().files.Read("C:\\1.txt");
      house.machine().files.Write("C:\\1.txt", "aaaa", IfPresent::kReplace);
      house.machine().clock.Sleep(1s);
      house.machine().files.Write("C:\\2.txt", "bbbb", IfPresent::kReplace);
    };
    house.StopDeadAt(at, moment);
    EXPECT_THROW(component(), PowerCut) << story;
    EXPECT_EQ(house.FileBytes("C:\\1.txt"), first) << story;
    EXPECT_EQ(house.FileBytes("C:\\2.txt"), second) << story;
    component();
    EXPECT_EQ(house.FileBytes("C:\\2.txt"), "bbbb");
  }
}

}  // namespace
}  // namespace ondura
