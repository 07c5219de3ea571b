#include "reporting/WebDavControl.h"

#include "ReportingHouse.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {
namespace {

using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

class WebDavControlTest : public ReportingHouse {
 protected:
  // Has a connection, as a host brings it along.
  void Connect() {
    WebRequests& web = machine_.machine().web;
    web_.hConnect =
        web.Connect(web.Open({.agent = "host", .access_type = 0, .proxy_name = ""}), "server", 80);
    web_.RequestHeaders = "Depth: 1\r\n";
    web_.AuthorizationValue = "QTpC";
  }

  SentWebRequest Sent() { return machine_.surroundings().web_requests.back(); }
};

TEST_F(WebDavControlTest, ARequestCarriesAuthorizationTimeoutsProxyAndBody) {
  Connect();
  security_.SecureRequestFlag = kRequestSecure;
  web_.RequestFlags = kRequestReload;
  web_.RequestBody = "t\xC3\xBCr";
  EXPECT_EQ(web_.HttpProcessCalls("PUT", "/a b#c%", false), 200);
  EXPECT_EQ(Sent().verb + " " + Sent().object + " " + Sent().version, "PUT /a b%23c%25 HTTP/1.1");
  EXPECT_EQ(Sent().flags, kRequestReload | kRequestSecure);
  EXPECT_THAT(Sent().headers, ElementsAre("Authorization: Basic QTpC\r\nDepth: 1\r\n"));
  EXPECT_THAT(Sent().numbers, UnorderedElementsAre(Pair(InternetOption::kConnectTimeout, 45000),
                                                   Pair(InternetOption::kReceiveTimeout, 45000),
                                                   Pair(InternetOption::kSendTimeout, 45000)));
  EXPECT_TRUE(Sent().texts.empty());
  EXPECT_EQ(Sent().body, "t\xFCr");
  EXPECT_EQ(TraceText(),
            "Entered HTTPCall with action: PUT & resource: /a b#c%\r\n"
            "Exit from HttpProcessCalls with status code : 200\r\n");
  web_.ProxyUser = "p";
  web_.ProxyPass = "q";
  machine_.surroundings().on_web_request = [](const SentWebRequest&) {
    return WebAnswer{.error = 0, .status = 507, .headers = {{5, "12"}, {6, "x"}}};
  };
  EXPECT_EQ(web_.HttpProcessCalls("GET", "/", false), 507);
  EXPECT_EQ(Sent().headers.front(), "Authorization: Basic QTpC\r\nAuthorization: Basic QTpC\r\nDepth: 1\r\n");
  EXPECT_THAT(Sent().texts, UnorderedElementsAre(Pair(InternetOption::kProxyUserName, "p"),
                                                 Pair(InternetOption::kProxyPassword, "q")));
  EXPECT_EQ(web_.ReadNumericHeader(5), 12);
  EXPECT_EQ(web_.ReadNumericHeader(6), 0);
  EXPECT_EQ(web_.ReadNumericHeader(7), 0);
}

TEST_F(WebDavControlTest, APreparedRequestIsNotSentAndIsClosedByTheNextCall) {
  Connect();
  EXPECT_EQ(web_.HttpProcessCalls("PUT", "/x", true), 1);
  EXPECT_TRUE(machine_.surroundings().web_requests.empty());
  const InternetHandle prepared = web_.hRequest;
  EXPECT_EQ(web_.HttpProcessCalls("PUT", "/y", true), 1);
  EXPECT_FALSE(machine_.machine().web.Send(prepared, ""));
  EXPECT_TRUE(machine_.machine().web.Send(web_.hRequest, ""));
}

TEST_F(WebDavControlTest, ACallThatFailsGivesItsError) {
  web_.RequestHeaders = "as it was";
  EXPECT_EQ(web_.HttpProcessCalls("GET", "/", false), 12018) << "without a connection";
  EXPECT_EQ(web_.RequestHeaders, "as it was");
  Connect();
  machine_.surroundings().on_web_request = [](const SentWebRequest&) {
    return WebAnswer{.error = 12002, .status = 0, .headers = {}};
  };
  EXPECT_EQ(web_.HttpProcessCalls("GET", "/", false), 12002);
  EXPECT_EQ(web_.ErrorText(), "");
}

TEST_F(WebDavControlTest, DummyRequestsEndWithTheThirdOrTheFirstThatIsNotAnswered) {
  for (const std::size_t good : {1, 9}) {
    machine_.surroundings().web_requests.clear();
    machine_.surroundings().on_web_request = [&](const SentWebRequest& sent) {
      EXPECT_EQ(sent.verb + sent.object, "TDummy");
      return WebAnswer{.error = 0,
                       .status = machine_.surroundings().web_requests.size() < good ? 200U : 404U,
                       .headers = {}};
    };
    Connect();
    web_.DummyCall();
    EXPECT_EQ(machine_.surroundings().web_requests.size(), std::min<std::size_t>(good + 1, 3));
    EXPECT_EQ(web_.hRequest, kNoInternet);
  }
}

TEST_F(WebDavControlTest, OpeningReplacesTheSessionAndTellsAFailure) {
  EXPECT_TRUE(web_.hInternetOpen("agent", 3, "proxy", "user", "pass"));
  const InternetHandle first = web_.getInternetOpenHandle();
  EXPECT_EQ(web_.ProxyUser + web_.ProxyPass, "userpass");
  EXPECT_TRUE(machine_.surroundings().web_notices.empty());
  transfer_.Trf_WriteUserProfile("AutoConnect", "1");
  transfer_.Trf_WriteUserProfile("ISPName", "Dial");
  machine_.Fail("WebRequests.Open agent");
  EXPECT_FALSE(web_.hInternetOpen("agent", 0, "", "", ""));
  EXPECT_EQ(web_.getInternetOpenHandle(), kNoInternet);
  EXPECT_EQ(machine_.machine().web.Connect(first, "server", 80), kNoInternet) << "the first is closed";
  EXPECT_EQ(web_.ErrorText(), "Unknown Error has occured. : 0");
  EXPECT_THAT(machine_.surroundings().web_notices,
              ElementsAre(InternetOption::kSettingsChanged, InternetOption::kRefresh));
  const auto value = machine_.machine().registry.Read(
      {RegistryRoot::kLocalMachine, "RemoteAccess\\Profile\\Dial", "AutoConnect"},
      RegistryAccess::kQueryValue);
  ASSERT_TRUE(value);
  EXPECT_EQ(value->type, RegistryType::kDword);
  EXPECT_EQ(value->number, 1U);
}

// Stands for all texts of a table at once (FNV-1a). A changed text needs a look at the table, and a new
// number here.
std::uint64_t Digest(std::string_view text) {
  std::uint64_t digest = 14695981039346656037U;
  for (const char byte : text) digest = (digest ^ static_cast<unsigned char>(byte)) * 1099511628211U;
  return digest;
}

TEST_F(WebDavControlTest, AFileErrorWinsOverEveryStatus) {
  std::string texts;
  for (int number = 50; number < 80; ++number) {
    web_.dav_oper_stat_codes(503, "GET", number);
    texts += web_.ErrorText() + "\n";
  }
  EXPECT_EQ(Digest(texts), 11667981718683404722U);
}

TEST_F(WebDavControlTest, AStatusHasItsSentenceForEachVerb) {
  std::string texts;
  for (const char* verb : {"PUT", "DELETE", "PROPFIND", "MKCOL", "mkcol", "MOVE", "COPY", "COPY:"}) {
    for (int status = 200; status < 510; ++status) {
      web_.dav_seterrorstring("before");
      web_.dav_oper_stat_codes(status, verb, 0);
      texts += web_.ErrorText() + "\n";
    }
  }
  EXPECT_EQ(Digest(texts), 676878390853772615U);
  machine_.disk().Erase(kTrace);
  web_.dav_oper_stat_codes(401, "PROPFIND", 0);
  EXPECT_EQ(TraceText(),
            "Enter ErrorOut 401PROPFIND\r\nExit ErrorOut 401PROPFIND\r\n"
            "Enter dav_oper_stat_codes 401PROPFIND\r\nExit dav_oper_stat_codes \r\n");
}

TEST_F(WebDavControlTest, AnErrorOfTheInternetCallsHasItsSentence) {
  std::string texts;
  for (std::uint32_t number = 11999; number < 12040; ++number) texts += http_.HttpErrorText(number) + "|";
  EXPECT_EQ(Digest(texts), 6664699377672218262U);
  machine_.surroundings().web_last_response = std::string{"530 no\0more", 11};
  EXPECT_EQ(http_.HttpErrorText(12003), "530 no");
  machine_.surroundings().web_last_response = std::string(300, 'x');
  EXPECT_EQ(http_.HttpErrorText(12003), std::string(256, 'x'));
}

}  // namespace
}  // namespace ondura
