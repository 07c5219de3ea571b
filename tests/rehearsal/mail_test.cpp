// Mails by the real helper, by hand and at the end of real jobs, to an endpoint that keeps what it gets.

#include <gmock/gmock.h>

#include "HostProcess.h"
#include "Rehearsal.h"
#include "support/NotificationServer.h"
#include "text/text.h"
#include "text/utf16.h"

namespace ondura::rehearsal {
namespace {

using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kHelper = "OndruaEStartup.exe";

// A rehearsal whose notification host is the server.
class MailRehearsal : public JobRehearsal {
 public:
  explicit MailRehearsal(const NotificationServer& server) {
    Install(MAIL_HELPER, kHelper);
    PutFile("C:\\authority.pem", server.Authority());
    Deploy("NotificationHost", server.address());
    Deploy("NotificationAuthority", "C:\\authority.pem");
  }

  void Deploy(std::string_view key, std::string_view value) {
    machine().profiles.WriteString({std::string{kInstall} + "Deployment.ini", "Deployment", key}, value);
  }

  // The helper's exit code.
  std::uint32_t Mail(const std::string& fields) { return Finish(Start(fields, kHelper)); }

  void PutLog(std::string_view text) { PutFile("C:\\log.txt", std::string{kUtf16Mark} + ToUtf16(text)); }

  // A run of the job and its helpers to their end.
  void BackUp(const char* mailids, const char* mailoption) {
    MakeDue("1", mailids, mailoption);
    ASSERT_EQ(HostProcess(HostRoot(), "service", "1").Finish(), 0);
    // The helpers that the job has started outlive it.
    for (int look = 0; look < 400 && Runs(kHelper); ++look) std::this_thread::sleep_for(25ms);
  }

  std::string Trace() { return FromUtf16(Read(UserFile("ScheduleTraceFile.txt"))); }

 private:
  bool Runs(std::string_view base_name) {
    const auto table = machine().processes.List(ProcessSource::kModules);
    return std::any_of(table.begin(), table.end(),
                       [&](const ProcessEntry& entry) { return entry.base_name == base_name; });
  }
};

std::string Fields(std::string_view result, std::string_view tail) {
  return "ann@example.com;0;" + std::string{result} +
         ";M/d/yyyy;C:\\log.txt;All  done.;11/14/2026 12:30:00 PM; SQL Server ;no room;ann" +
         std::string{tail};
}

TEST(MailHelperTest, PostsTheFormOfItsProductByteForByte) {
  const std::string body =
      "EMAIL=ann%40example%2Ecom\r\n&SUBJECT=Scheduled%20backup%20email%20notification%5Bann%5D\r\n&CONTENT="
      "Dear Ondura User (ann) ,\r\n\r\n"
      "Scheduled Backup status: (Ondura Backup Version No 3.4.1)\r\n"
      "Scheduled Time : 11/14/2026 12:30:00 PM\r\n"
      "Number%20of%20files%20considered%20for%20Backup%3A%203\r\n"
      "\r\n"
      "All  done.\r\nSuccessfully completed the SQL Server Scheduled backup.\r\n\r\n"
      "\r\nRegards,\r\nOndura Support.\r\n";
  for (const auto& [product, path, tail] :
       {std::tuple{"3", "/cgi-bin/Notify", ""}, {"2", "/cgi-bin/Notify_email_ondura", ";402"}}) {
    const NotificationServer server;
    MailRehearsal house(server);
    house.Configure("ProductNumber", product);
    house.Configure("ProductCaption", "Ondura Backup");
    house.PutLog("Number of files considered for Backup: 3\r\nend\r\n");
    EXPECT_EQ(house.Mail(Fields("2", tail)), 0U);
    EXPECT_THAT(server.Posts(),
                testing::ElementsAre(AllOf(StartsWith("POST " + std::string{path} + " HTTP/1.0\r\n"),
                                           testing::EndsWith("\r\n\r\n" + body))));
  }
}

TEST(MailHelperTest, LosesAMailWithOneTraceLine) {
  const std::string error = "Error details not available.";
  using Row = std::tuple<std::vector<std::string>, const char*, std::string>;
  for (const auto& [options, authority, words] :
       {Row{{"--certificate", "wrong-name"}, "C:\\authority.pem", error}, Row{{}, "", error},
        Row{{"--hang"}, "C:\\authority.pem", "The request has timed out."}}) {
    SCOPED_TRACE(testing::PrintToString(options));
    const NotificationServer server(options);
    MailRehearsal house(server);
    house.PutHostFile("machine.ini", "[Internet]\nTimeout=500\n");
    house.Deploy("NotificationAuthority", authority);
    house.PutLog("a\r\nb\r\n");
    EXPECT_EQ(house.Mail(Fields("2", "")), 1U);
    const std::vector<std::string> told = Split(house.Trace(), "  Email was not sent: ");
    ASSERT_EQ(told.size(), 2U);
    EXPECT_THAT(told[1], StartsWith(words + "\r\n"));
    EXPECT_TRUE(server.Posts().empty() || words != error)
        << "nothing may reach a server that is not the right one";
  }
}

TEST(MailHelperTest, RefusesWhatIsNoMail) {
  const NotificationServer server;
  MailRehearsal house(server);
  house.PutFile("C:\\log.txt", "");
  EXPECT_EQ(house.Mail(Fields("2", "")), 0U) << "an empty log is nothing to tell";
  EXPECT_EQ(house.Mail("ann@example.com;0;2"), 2U);
  EXPECT_EQ(house.Mail(Fields("two", "")), 2U);
  EXPECT_EQ(house.Mail(Fields("2", ";402;more")), 2U);
  EXPECT_THAT(server.Posts(), IsEmpty());
}

TEST(MailJobTest, TellsEveryAddressAndOnFailureAlone) {
  const NotificationServer server;
  MailRehearsal house(server);
  house.BackUp("ann@example.com;bob@example.com;;nobody@example.com", "3");
  EXPECT_EQ(house.Result(), "402");
  EXPECT_THAT(server.Posts(), testing::UnorderedElementsAre(HasSubstr("\r\n\r\nEMAIL=ann%40"),
                                                            HasSubstr("\r\n\r\nEMAIL=bob%40")));
  EXPECT_THAT(server.Posts()[0], HasSubstr("Successfully completed the Scheduled backup.\r\n"));
  house.PutFile("C:\\Docs\\b.txt", "more");
  for (const char* bytes : {"", "[Rehearsal]\r\n51=-416\r\n"}) {
    house.PutFile(Rehearsal::VaultFile("account.ini"), bytes);
    house.BackUp("carl@example.com", "2");
  }
  ASSERT_EQ(server.Posts().size(), 3U) << "a success is not told";
  EXPECT_THAT(server.Posts()[2], AllOf(HasSubstr("\r\n\r\nEMAIL=carl%40"), Not(HasSubstr("Successfully"))));
}

}  // namespace
}  // namespace ondura::rehearsal
