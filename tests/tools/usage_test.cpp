#include <vector>

#include "tools/ToolHouse.h"

namespace ondura::testing {
namespace {

using ::testing::HasSubstr;

TEST(ToolRefusal, TellsByExitCodeAndOneSentenceWhatIsWrong) {
  const AnnHouse house;
  for (const auto& [story, arguments, exit, says] :
       {std::tuple{"a command that there is not", "frobnicate", 2, "frobnicate"},
        {"no command at all", "", 2, "which command?"},
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
        {"a value of two lines", "set ann Status '1\n2'", 2, "one line"},
        {"a path that there is not", "select ann 'D:\\gone'", 1, "nothing at"},
        {"a path of the host", "exclude ann /etc/passwd", 1, "as the machine sees it"},
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
