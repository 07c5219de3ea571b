#include "ReportingHouse.h"

namespace ondura {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr const char* kEncodedFigures =
    "Backup%20Completed%20%20%20%20%20%5BBacked%20up%20Files%20%3A%203%5D\r\n";

class NotificationMailTest : public ReportingHouse {
 protected:
  NotificationMailTest() {
    values_.ScheduleMailDetail = "0";
    values_.ShortDateFormat = "M/d/yyyy";
    values_.SessionLogPath = kLog;
    values_.JobStatusText = "J";
    values_.ScheduledTime = ToLocalTime({2026, 11, 14, 12, 30, 5});
    values_.StageWord = " SQL Server ";
    values_.FailureReason = "R";
    PutLog("x\r\nBackup Completed     [Backed up Files : 3]\r\n");
  }

  void UseDates(const char* date_picture, const char* time_picture) {
    machine_.surroundings().locale_texts[kLocaleShortDate] = date_picture;
    machine_.surroundings().locale_texts[kLocaleTimeFormat] = time_picture;
    values_.ShortDateFormat = date_picture;
  }

  std::string Content() {
    const std::string body = Posted();
    return body.substr(body.find("CONTENT=") + 8);
  }

  std::string TimeLine() {
    mail_.SendMail("a", false, 2);
    const std::string content = Content();
    const auto at = content.find("Scheduled Time : ");
    return content.substr(at, content.find('\r', at) - at);
  }
};

// Columns: with detail stopped and not; without it stopped by the engine's result, otherwise, and not.
using ResultCase = std::tuple<std::int16_t, const char*, std::array<std::string, 5>>;

TEST_F(NotificationMailTest, TheBodyFollowsResultDetailAndStop) {
  const std::string cancel = "J\r\nBackup Canceled.\r\n\r\n";
  const std::string plain = "J\r\n\r\n";
  const std::string success = "J\r\nSuccessfully completed the SQL Server Scheduled backup.\r\n\r\n";
  const std::string reason = "\r\nPossible reason,\r\nR\r\n";
  const std::string one = "\r\n";
  const std::string two = "\r\n\r\n";
  const char* const columns[][3] = {
      {"1", "402", " 3 "}, {"1", "402", "33"}, {"0", "-414", "3"}, {"", "402", "3"}, {"2", "-4140", ""}};
  for (const auto& [statback, extra, want] : {ResultCase{2, "R", {one, "", cancel, plain, success}},
                                              ResultCase{4, "R", {one, two, cancel, plain, plain}},
                                              ResultCase{3, "R", {one, two + reason, cancel, plain, reason}},
                                              ResultCase{3, "", {one, two, cancel, plain, plain}},
                                              ResultCase{-402, "R", {two, two, plain, plain, plain}}}) {
    for (std::size_t i = 0; i < want.size(); ++i) {
      const auto& [detail, result, status] = columns[i];
      values_.ScheduleMailDetail = detail;
      values_.FailureReason = extra;
      transfer_.Trf_WriteUserProfileDefault("BackupStatus", "RetValue", result);
      transfer_.Trf_WriteUserProfileDefault("BackupStatus", "DLLStatus", status);
      mail_.SendMail("a", true, statback);
      const std::string log = i < 2 ? std::string{"x\r\n"} + kEncodedFigures +
                                          "\r\n----------------------------------------------\r\n"
                                    : std::string{kEncodedFigures} + "\r\n";
      EXPECT_EQ(Content(),
                "Dear Acme Backup User (ann) ,\r\n\r\n"
                "Scheduled Backup status: (Acme Online Version No 3.4.1)\r\n"
                "Scheduled Time : 11/14/2026 12:30:05 PM\r\n" +
                    log + want[i] + "\r\nRegards,\r\nAcme Backup Support.\r\n")
          << statback << " column " << i;
    }
  }
}

TEST_F(NotificationMailTest, SubjectVersionAndTraceBelongToOneMail) {
  const RegistryName version{RegistryRoot::kCurrentUser, "software\\Corvane\\Acme\\Application", "Version"};
  machine_.PutRegistryValue(version, {RegistryType::kText, "5.6", 0});
  for (int mails = 0; mails < 2; ++mails) mail_.SendMail("a@b", false, 2);
  EXPECT_EQ(values_.MailSubject, "Scheduled backup email notification[ann][Backed up Files : 3]");
  EXPECT_THAT(Posted(), HasSubstr("EMAIL=a%40b\r\n&SUBJECT=Scheduled%20backup%20email%20notification%5Bann%5D"
                                  "%5BBacked%20up%20Files%20%3A%203%5D\r\n&CONTENT=Dear "));
  EXPECT_THAT(Content(), HasSubstr("Version No 5.6)"));
  EXPECT_EQ(TraceText(),
            "11-14-2026 9:05:07  Send Email notififaction\r\n11-14-2026 9:05:07\r\n"
            "11-14-2026 9:05:07  Send Email notififaction\r\n11-14-2026 9:05:07\r\n");
  for (const auto& [stored, want] : {std::pair{RegistryValue{RegistryType::kText, " ", 0}, "3.4.1"},
                                     std::pair{RegistryValue{RegistryType::kDword, "", 7}, "7"}}) {
    machine_.PutRegistryValue(version, stored);
    mail_.SendMail("a@b", false, 2);
    EXPECT_THAT(Content(), HasSubstr(std::string{"Version No "} + want + ")"));
  }
}

TEST_F(NotificationMailTest, WithoutALogThereIsNoMail) {
  machine_.PutFile(kLog, "");
  mail_.SendMail("a", false, 3);
  machine_.disk().Erase(kLog);
  mail_.SendMail("a", false, 3);
  EXPECT_TRUE(machine_.surroundings().web_requests.empty());
  EXPECT_EQ(TraceText(), "");
}

using TimeCase = std::tuple<const char*, TimeFields, const char*>;

TEST_F(NotificationMailTest, UsersWhoseDatesBeginWithTheDaySeeDayAndMonthSwapped) {
  for (const auto& [date_picture, time, want] :
       {TimeCase{"M/d/yyyy", TimeFields{2026, 6, 5, 7, 0, 0}, "6/5/2026 07:00:00"},
        TimeCase{"dd/MM/yyyy", TimeFields{2026, 6, 5, 7, 0, 0}, "06/05/2026 07:00:00"},
        TimeCase{"dd-MM-yyyy", TimeFields{2026, 6, 5, 7, 0, 0}, "06-05-2026 07:00:00"},
        TimeCase{"D.M.yyyy", TimeFields{2026, 11, 12, 23, 59, 58}, "11.12.2026 23:59:58"},
        TimeCase{"d.M.yyyy", TimeFields{2026, 11, 13, 0, 0, 0}, "13.11.2026 00:00:00"},
        TimeCase{"d.M.yyyy", TimeFields{2029, 1, 2, 0, 0, 0}, "1.2.2029 00:00:00"},
        TimeCase{"d.M.yyyy", TimeFields{2030, 1, 2, 0, 0, 0}, "1.2.1930 00:00:00"},
        TimeCase{"d.M.yyyy", TimeFields{2096, 2, 29, 0, 0, 0}, "29.2.1996 00:00:00"}}) {
    UseDates(date_picture, "HH:mm:ss");
    values_.ScheduledTime = ToLocalTime(time);
    EXPECT_EQ(TimeLine(), std::string{"Scheduled Time : "} + want) << date_picture;
  }
  EXPECT_EQ(values_.ScheduledTime, ToLocalTime({1996, 2, 29, 0, 0, 0})) << "the new value is kept";
  values_.ScheduledTime.reset();
  EXPECT_EQ(TimeLine(), "Scheduled Time : ");
}

TEST_F(NotificationMailTest, ANoticeStandsInTheFrameWithTheTimeThatIsKnown) {
  for (const auto& [date_picture, text, field, want] :
       {std::tuple{"M/d/yyyy", "6/5/2026 7:00", "x", "6/5/2026 7:00"},
        {"M/d/yyyy", "", "6/6/2026", "6/6/2026"},
        {"dd/MM/yyyy", "05/06/2026 07:00:00", "x", "05-06-2026"},
        {"dd/MM/yyyy", "11-14-2026 7:00:00", "x", "14-11-2026"},
        {"dd/MM/yyyy", "soon", "x", "soon"}}) {
    UseDates(date_picture, "HH:mm:ss");
    values_.ScheduledTimeText = text;
    values_.ScheduleTimeField = field;
    mail_.SendMailNew("a", "Notice");
    EXPECT_EQ(Posted(),
              std::string{"EMAIL=a\r\n&SUBJECT=\r\n&CONTENT=DearAcme Backup User (ann) ,\r\n\r\n\r\n"
                          "Scheduled Time : "} +
                  want + "\r\n\r\nNotice\r\n\r\nRegards,\r\nAcme Backup Support.\r\n");
  }
  EXPECT_THAT(TraceText(), testing::EndsWith("11-14-2026 9:05:07  Send Email notififaction\r\n"));
}

TEST_F(NotificationMailTest, APostGoesToThePathOfItsProduct) {
  machine_.PutFile("C:\\app\\Deployment.ini", "[Deployment]\r\nNotificationHost=mail.test\r\n");
  for (const auto& [product, to, path, tail] :
       {std::tuple{1, "b@c", "/cgi-bin/Notify", ""},
        {2, "  ", "/cgi-bin/Notify_email_ondura", ""},
        {2, " b@c ", "/cgi-bin/Notify_unicode", "\r\n&user_email=b%40c"}}) {
    installation_.ProductNumber = static_cast<std::int16_t>(product);
    EXPECT_TRUE(http_.SendEmail(" a\x09z ", "\xC3\xBC\xE2\x82\xAC.", "t\xC3\xBC & x=1\r\n", to));
    const SentWebRequest& sent = machine_.surroundings().web_requests.back();
    EXPECT_EQ(sent.body, std::string{"EMAIL=a%09z\r\n&SUBJECT=%FC%80%2E\r\n&CONTENT=t\xFC & x=1\r\n"} + tail);
    EXPECT_EQ(sent.agent + " " + sent.host + " " + std::to_string(sent.port), "http generic mail.test 11900");
    EXPECT_EQ(sent.verb + " " + sent.object + " " + sent.version, std::string{"POST "} + path + " HTTP/1.0");
    EXPECT_EQ(sent.flags, 0x80800000);
    EXPECT_THAT(sent.headers, ElementsAre("Content-Type: application/x-www-form-urlencoded\r\n"));
  }
  // Handles count up from the first session's.
  EXPECT_NE(machine_.machine().web.Connect(1, "h", 1), kNoInternet);
  EXPECT_EQ(machine_.machine().web.OpenRequest(2, {}), kNoInternet);
  EXPECT_FALSE(machine_.machine().web.Send(3, ""));
}

TEST_F(NotificationMailTest, OnlyTheFirstFieldOfAFormIsEncodedAgainstItsWish) {
  for (const char* name : {"A", "B"}) http_.AddParam(name, "&", true);
  http_.SendEmail("", "", "", "");
  EXPECT_EQ(Posted(), "A=%26\r\n&B=&\r\n&EMAIL=\r\n&SUBJECT=\r\n&CONTENT=");
}

TEST_F(NotificationMailTest, AFailedPostLeavesItsReasonAndNothingForTheNextOne) {
  machine_.surroundings().on_web_request = [](const SentWebRequest&) {
    return WebAnswer{.error = 12007, .status = 0, .headers = {}};
  };
  EXPECT_FALSE(http_.SendEmail("lost", "", "", ""));
  EXPECT_EQ(web_.ErrorText(), "Server name could not be resolved.");
  machine_.surroundings().on_web_request = nullptr;
  EXPECT_TRUE(http_.SendEmail("a", "", "", ""));
  EXPECT_EQ(Posted(), "EMAIL=a\r\n&SUBJECT=\r\n&CONTENT=");
  EXPECT_FALSE(http_.PostForm("h", "/", "", 2, true)) << "no result was asked for";
  EXPECT_EQ(TraceText(), "11-14-2026 09:05:07  Email was not sent: Server name could not be resolved.\r\n");
}

TEST_F(NotificationMailTest, AnErrorWithoutANumberIsAFailedConnection) {
  machine_.Fail("WebRequests.Send");
  EXPECT_FALSE(http_.PostForm("h", "/", "", 2, false));
  EXPECT_EQ(web_.ErrorText(), "Attempt to connect to the server failed.");
}

TEST_F(NotificationMailTest, AnAuthorityOfTheDeploymentIsTrustedBeforeThePost) {
  machine_.PutFile("C:\\app\\Deployment.ini", "[Deployment]\r\nNotificationAuthority=C:\\app\\ca.pem\r\n");
  EXPECT_TRUE(http_.SendEmail("a", "", "", ""));
  EXPECT_EQ(TraceText(),
            "11-14-2026 09:05:07  The certificate authority of the notification host was not "
            "accepted: C:\\app\\ca.pem\r\n");
  machine_.PutFile("C:\\app\\ca.pem", "-----BEGIN CERTIFICATE-----\n");
  std::size_t trusted = 0;
  machine_.surroundings().on_web_request = [&](const SentWebRequest&) {
    trusted = machine_.surroundings().trusted_authorities.size();
    return WebAnswer{};
  };
  EXPECT_TRUE(http_.SendEmail("a", "", "", ""));
  EXPECT_EQ(trusted, 1U);
}

}  // namespace
}  // namespace ondura
