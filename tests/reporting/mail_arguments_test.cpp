#include "reporting/mail_arguments.h"

#include <gmock/gmock.h>

namespace ondura {
namespace {

struct ArgumentsCase {
  const char* story;
  std::string text;
  std::string job_status, user, engine_status;  // all empty where the text is refused
};

TEST(MailArguments, TakeFiveFieldsFromTheLeftAndTheRestFromTheRight) {
  const std::string left = "a@b.example;0;3;M/d/yyyy;C:\\log.txt;";
  const std::string right = ";11/14/2026 12:30:00 PM; SQL Server ;no room;";
  for (const auto& [story, text, job_status, user, engine_status] :
       {ArgumentsCase{"without an engine status", left + "Failed." + right + "ann", "Failed.", "ann", ""},
        ArgumentsCase{"with one", left + "Failed." + right + "ann;-409", "Failed.", "ann", "-409"},
        ArgumentsCase{"the tool's text holds the mark", left + "a; b;c" + right + "ann", "a; b;c", "ann", ""},
        ArgumentsCase{"the same with an engine status", left + "a;b" + right + "ann;402", "a;b", "ann",
                      "402"},
        ArgumentsCase{"a user that is a number", left + "a;b" + right + "7", "a;b", "7", ""},
        ArgumentsCase{"the same with an engine status", left + "a;b" + right + "7;402", "a;b", "7", "402"},
        ArgumentsCase{"too few fields", left + "Failed.;ann", "", "", ""},
        ArgumentsCase{"too many fields", left + "Failed." + right + "ann;402;more", "", "", ""},
        ArgumentsCase{"no user", left + "Failed." + right, "", "", ""},
        ArgumentsCase{"no address", ";0;3;M/d/yyyy;C:\\log.txt;Failed." + right + "ann", "", "", ""},
        ArgumentsCase{"no result", "a@b.example;0;x;M/d/yyyy;l;Failed." + right + "ann", "", "", ""}}) {
    SCOPED_TRACE(story);
    const auto read = ParseMailArguments(text);
    ASSERT_EQ(read.has_value(), !user.empty());
    if (!read) continue;
    EXPECT_EQ(read->address, "a@b.example");
    EXPECT_EQ(read->session_log, "C:\\log.txt");
    EXPECT_EQ(read->job_status, job_status);
    EXPECT_EQ(read->scheduled_time, "11/14/2026 12:30:00 PM");
    EXPECT_EQ(read->stage_word, " SQL Server ");
    EXPECT_EQ(read->failure_reason, "no room");
    EXPECT_EQ(read->user, user);
    EXPECT_EQ(read->engine_status, engine_status);
    EXPECT_EQ(MailArgumentsText(*read), text);
  }
}

}  // namespace
}  // namespace ondura
