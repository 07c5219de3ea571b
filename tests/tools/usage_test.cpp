#include "tools/tool_run.h"

namespace ondura::testing {
namespace {

using ::testing::HasSubstr;

using Arguments = std::vector<std::string>;

struct RefusalCase {
  std::string story;
  Arguments arguments;
  int exit;
  std::string says;
};

TEST(ToolRefusal, TellsByExitCodeAndOneSentenceWhatIsWrong) {
  const AnnHouse house;
  for (const RefusalCase& row :
       {RefusalCase{"a command that there is not", {"frobnicate"}, 2, "frobnicate"},
        RefusalCase{"no command at all", {}, 2, "which command?"},
        RefusalCase{"a machine made twice", {"init"}, 1, "--force"},
        RefusalCase{"a user added twice in other letters", {"user", "add", "ANN"}, 1, "already"},
        RefusalCase{"a name that would break the list", {"user", "add", "a;b"}, 2, "can't be a user's name"},
        RefusalCase{
            "a name that would leave its folder", {"user", "add", "..\\x"}, 2, "can't be a user's name"},
        RefusalCase{"nobody there to ask", {"user", "add", "bob"}, 2, "--password-stdin"},
        RefusalCase{"a user that there is not", {"status", "bob"}, 1, "no user 'bob'"},
        RefusalCase{"a key that there is not", {"get", "ann", "colour"}, 2, "no key 'colour'"},
        RefusalCase{"a key that is not set", {"get", "ann", "ISPName"}, 1, "not set"},
        RefusalCase{"a value given twice", {"set", "ann", "port", "1", "--stdin"}, 2, "either"},
        RefusalCase{"a value not given", {"set", "ann", "port"}, 2, "either"},
        RefusalCase{"a value of two lines", {"set", "ann", "Status", "1\n2"}, 2, "one line"},
        RefusalCase{"a path that there is not", {"select", "ann", "D:\\gone"}, 1, "nothing at"},
        RefusalCase{"a path of the host", {"exclude", "ann", "/etc/passwd"}, 1, "as the machine sees it"},
        RefusalCase{
            "a path that is not in the list", {"select", "ann", "--remove", "D:\\x"}, 1, "not in the list"},
        RefusalCase{"a log that there is not", {"log", "ann"}, 1, "no session log"},
        RefusalCase{
            "a day that there is not", {"schedule", "add", "ann", "--at", "2026-02-30 10:00"}, 2, "--at"},
        RefusalCase{"a weekday that there is not",
                    {"schedule", "add", "ann", "--at", "now", "--repeat", "weekly:mon,frog"},
                    2,
                    "--repeat"},
        RefusalCase{"two addresses in one",
                    {"schedule", "add", "ann", "--at", "now", "--mail", "a@x.org;b@x.org"},
                    2,
                    "--mail"},
        RefusalCase{"a number out of the list", {"schedule", "remove", "ann", "1"}, 1, "no schedule 1"}}) {
    const ToolResult result = house.Run(row.arguments);
    EXPECT_EQ(result.exit, row.exit) << row.story << ": " << result.err;
    EXPECT_THAT(result.err, HasSubstr(row.says)) << row.story;
    EXPECT_EQ(result.out, "") << row.story;
  }
}

TEST(ToolRoot, OfNoMachineIsRefusedRatherThanFilled) {
  const ToolHouse empty;
  EXPECT_EQ(empty.Run({"status"}).exit, 2);
  EXPECT_THAT(empty.Run({"status"}).err, HasSubstr("init"));
  EXPECT_THAT(ToolHouse::RunBare({"status"}).err, HasSubstr("ONDURA_ROOT"));
  EXPECT_THAT(ToolHouse::RunBare({"--root", empty.root() + "/gone", "status"}).err, HasSubstr("no folder"));
}

TEST(ToolHelp, HoldsAnExampleAndNeedsNoMachine) {
  for (Arguments words : {Arguments{"init"},
                          {"user"},
                          {"set"},
                          {"get"},
                          {"schedule"},
                          {"schedule", "add"},
                          {"schedule", "list"},
                          {"schedule", "remove"},
                          {"select"},
                          {"exclude"},
                          {"status"},
                          {"log"}}) {
    words.emplace_back("--help");
    const ToolResult result = ToolHouse::RunBare(words);
    EXPECT_EQ(result.exit, 0) << words.front();
    EXPECT_THAT(result.out, HasSubstr("Example: ondura " + words.front()));
  }
}

TEST(ToolVersion, IsTheProjects) {
  EXPECT_EQ(ToolHouse::RunBare({"--version"}).out, "ondura " ONDURA_VERSION "\n");
}

}  // namespace
}  // namespace ondura::testing
