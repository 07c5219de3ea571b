#include <sstream>
#include <vector>

#include "tools/ToolHouse.h"

namespace ondura::testing {
namespace {

using ::testing::HasSubstr;

TEST(ToolRefusal, TellsByExitCodeAndOneSentenceWhatIsWrong) {
  const AnnHouse house;
  for (const auto& [story, arguments, exit, says] :
       {std::tuple{"a command that there is not", "frobnicate", 2,
                   "'ondura frobnicate'; there are init, user"},
        {"a command that is nearly one", "--install x statsu", 2, "did you mean 'ondura status'?"},
        {"a command below one", "schedule lst", 2, "did you mean 'ondura schedule list'?"},
        {"the user before the command", "ann restore", 2, "did you mean 'ondura restore ann'?"},
        {"a command that is not whole", "schedule", 2, "needs a command: add, list, remove"},
        {"an option that is nearly one", "schedule add ann --att=12:30", 2, "did you mean '--at'?"},
        {"an option far from any", "status --frobnicate", 2, "no option '--frobnicate'; see 'ondura status"},
        {"a word that is missing", "set ann", 2, "needs KEY"},
        {"a word too many", "status ann --json bob", 2, "can't use 'bob'"},
        {"a number that is none", "schedule remove ann x", 2, "NUMBER: Value x not in range 1 to 32767"},
        {"a shell that there is not", "completion ksh", 2, "bash, zsh or fish"},
        {"a machine made twice", "init", 1, "--force"},
        {"a user added twice in other letters", "user add ANN", 1, "already"},
        {"a name that would break the list", "user add 'a;b'", 2, "can't be a user's name"},
        {"a name that would leave its folder", "user add '..\\x'", 2, "can't be a user's name"},
        {"nobody there to ask", "user add bob", 2, "--password-stdin"},
        {"a user that there is not", "status bob", 1, "no user 'bob'"},
        {"a key that there is not", "get ann colour", 2, "no key 'colour'"},
        {"a key that is not set", "get ann ISPName", 1, "not set"},
        {"a value given twice", "set ann port 1 --stdin", 2, "either"},
        {"a value not given", "set ann port", 2, "either"},
        {"a value of two lines", "set ann SerNM '1\n2'", 2, "one line"},
        {"a path that there is not", "select ann 'D:\\gone'", 1, "nothing at"},
        {"a path of the host", "exclude ann /etc/passwd", 1, "as the machine sees it"},
        {"a pattern", "exclude ann 'D:\\*.tmp'", 2, "is a pattern"},
        {"a path that is not in the list", "select ann --remove 'D:\\x'", 1, "not in the list"},
        {"a log that there is not", "log ann", 1, "no session log"},
        {"a day that there is not", "schedule add ann --at '2026-02-30 10:00'", 2, "--at"},
        {"a weekday that there is not", "schedule add ann --at now --repeat weekly:mon,frog", 2, "--repeat"},
        {"two addresses in one", "schedule add ann --at now --mail 'a@x.org;b@x.org'", 2, "--mail"},
        {"a number out of the list", "schedule remove ann 1", 1, "no schedule 1"}}) {
    const ToolResult result = house.Run(arguments);
    EXPECT_EQ(result.exit, exit) << story << ": " << result.err;
    EXPECT_THAT(result.err, HasSubstr(says)) << story;
    EXPECT_EQ(result.out, "") << story;
  }
}

TEST(ToolNextSteps, FollowTheStateOfTheMachine) {
  const AnnHouse house;
  house.Run("select ann 'D:\\docs'");
  EXPECT_THAT(ToolHouse::RunBare("").out, HasSubstr("1. Make the machine"));
  EXPECT_THAT(ToolHouse().Run("").out, HasSubstr("1. Make the machine"));
  house.Run("select ann --remove 'D:\\docs'");
  EXPECT_THAT(house.Run("").out, HasSubstr("1. ann has nothing selected"));
  house.Run("select ann 'My Computer'");
  EXPECT_THAT(house.Run("").out, HasSubstr("1. ann has no schedule"));
  house.Run("schedule add ann --at 22:00");
  EXPECT_THAT(house.Run("").out, HasSubstr("1. No host runs"));
  house.Put("C/ProgramData/Ondura/HostState.ini", "[Host]\nLastTick=01-01-2020 12:00:00\n");
  EXPECT_THAT(house.Run("").out, HasSubstr("1. No host runs"));
}

TEST(ToolCompletion, OffersWhatMayComeNext) {
  const AnnHouse house;
  const auto words = [&](const std::string& so_far) {
    std::string first;
    for (std::istringstream lines(house.Run("complete -- " + so_far).out); lines;) {
      std::string line;
      std::getline(lines, line);
      if (!line.empty()) first += line.substr(0, line.find('\t')) + " ";
    }
    return first;
  };
  for (const auto& [so_far, next] : {std::pair{"sch", "schedule "},
                                     {"schedule ''", "add list remove "},
                                     {"schedule --root x l", "list "},
                                     {"status --j", "--json "},
                                     {"status ''", "ann "},
                                     {"status ann ''", ""},
                                     {"set ann sche", ""},
                                     {"set ann Sched", "Scheduled "},
                                     {"frobnicate ''", ""},
                                     {"schedule add ann --at ''", ""}}) {
    EXPECT_THAT(words(so_far), HasSubstr(next)) << so_far;
    EXPECT_EQ(words(so_far).empty(), std::string_view{next}.empty()) << so_far;
  }
  EXPECT_THAT(house.Run("man").out, HasSubstr(".SS ondura schedule add USER [OPTION...]\n"));
}

TEST(ToolRoot, OfNoMachineIsRefusedRatherThanFilled) {
  const ToolHouse empty;
  EXPECT_EQ(empty.Run("status").exit, 2);
  EXPECT_THAT(empty.Run("status").err, HasSubstr("init"));
  EXPECT_THAT(ToolHouse::RunBare("status").err, HasSubstr("ONDURA_ROOT"));
  EXPECT_THAT(ToolHouse::RunBare("--root " + empty.root() + "/gone status").err, HasSubstr("no folder"));
}

TEST(ToolHelp, HoldsAnExampleAndNeedsNoMachine) {
  EXPECT_EQ(ToolHouse::RunBare("--version").out, "ondura " ONDURA_VERSION "\n");
  for (const std::string& command :
       std::vector<std::string>{"init", "user", "set", "get", "schedule", "schedule add", "schedule list",
                                "schedule remove", "select", "exclude", "status", "log"}) {
    const ToolResult result = ToolHouse::RunBare(command + " --help");
    EXPECT_EQ(result.exit, 0) << command;
    EXPECT_THAT(result.out, HasSubstr("Example: ondura " + command.substr(0, command.find(' '))));
  }
}

}  // namespace
}  // namespace ondura::testing
