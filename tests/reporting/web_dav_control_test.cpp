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

// The parts of each line of a table, between "|".
std::vector<std::vector<std::string>> RowsOf(std::string_view table) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& line : LinesOf(table)) rows.push_back(Split(line, "|"));
  return rows;
}

TEST_F(WebDavControlTest, AFileErrorWinsOverEveryStatus) {
  for (const auto& row : RowsOf(R"(52|Bad file name or number.
53|File not found.
54|Bad file mode.
55|File already open.
57|Device I/O error.
68|Device unavailable.
70|Permission Denied.
71|Disk Not Ready.
75|Path/File Access Error.
76|Path not found.)")) {
    web_.dav_oper_stat_codes(503, "GET", std::stoi(row[0]));
    EXPECT_EQ(web_.ErrorText(), row[1]);
  }
  EXPECT_EQ(machine_.FileBytes(kTrace), std::nullopt);
  web_.dav_oper_stat_codes(400, "GET", 56);
  EXPECT_EQ(web_.ErrorText(), "Bad request.");
}

TEST_F(WebDavControlTest, AStatusHasItsSentenceForEachVerb) {
  // "#" stands for the status.
  for (const auto& row : RowsOf(R"(207 DELETE|An unknown error occured during deletion.
207 PUT, 404 PUT, 405 PUT|Unknown Error has occured.
400 PUT|Bad request.
401 PROPFIND, 403 PROPFIND|before
401 PUT|The request requires user authentication.
403 MKCOL|The request is forbidden
403 PUT, 403 mkcol|The request is forbidden.
405 MKCOL|The specified directory name already exists.
406 PUT|Not Acceptable. The resource identified by the request is only capable of generating response entities which have content characteristics not acceptable according to the accept headers sent in the request.
407 PUT|Proxy authentication required. This error is similar to Unauthorized, but indicates that the client MUST first authenticate itself with the proxy.
408 PUT|Request timeout. The client did not produce a request within the time that the server was prepared to wait. The client MAY repeat the request without modifications at any later time.
409 MOVE|Till one or more intermediate collections have been created.
409 MKCOL|One or more intermediate collections have to be created.
409 COPY:|Could not copy the resource (till one or more intermediate collections have been created.)
409 PUT, 415 PUT, 423 PUT, 502 PUT, 507 PUT, 200 PUT, 409 COPY, -1 |Unknown Error has occured. : #
410 PUT|The requested resource is no longer available at the Tolmera server and no forwarding address is known. This condition SHOULD be considered permanent.
411 PUT|Length required. The Tolmera server refuses to accept the request without a defined Content- Length.
412 MOVE, 412 COPY|The name specified already exists in the same folder.
412 PUT|Unknown Error has occured. :412
413 PUT|Request entity too large. The Tolmera server is refusing to process a request because the request entity is larger than the server is willing or able to process. The server may close the connection to prevent the client from continuing the request.
414 PUT|Request-URL Too Long. The Tolmera server is refusing to service the request because the Request-URI is longer than the server is willing to interpret.
415 MKCOL|The Tolmera server does not support the request type of the body.
423 MOVE, 423 COPY|The source or the destination resource was locked.
502 MOVE, 502 COPY|This may occur when the destination is on another server and the destination server refuses to accept the resource.
503 PUT|Service Unavailable. The Tolmera server is currently unable to handle the request due to a temporary overloading or maintenance of the server. The implication is that this is a temporary condition which will be alleviated after some delay.
507 MKCOL|(Insufficient Storage) - The resource does not have sufficient space to record the state of the resource after the execution of this method.)")) {
    for (const std::string& request : Split(row[0], ", ")) {
      const auto words = Split(request, " ");
      web_.dav_seterrorstring("before");
      web_.dav_oper_stat_codes(std::stoi(words[0]), words[1], 0);
      EXPECT_EQ(web_.ErrorText(), ReplaceAll(row[1], "#", words[0])) << request;
    }
  }
  machine_.disk().Erase(kTrace);
  web_.dav_oper_stat_codes(401, "PROPFIND", 0);
  EXPECT_EQ(TraceText(),
            "Enter ErrorOut 401PROPFIND\r\nExit ErrorOut 401PROPFIND\r\n"
            "Enter dav_oper_stat_codes 401PROPFIND\r\nExit dav_oper_stat_codes \r\n");
}

TEST_F(WebDavControlTest, AnErrorOfTheInternetCallsHasItsSentence) {
  // Some texts end in a blank.
  for (const auto& row : RowsOf(R"(12001|No more handles could be generated at this time|
12002|The request has timed out.|
12004|An internal error has occurred.|
12005|URL is invalid.|
12006|URL scheme could not be recognized, or is not supported.|
12007|Server name could not be resolved.|
12008|Requested protocol could not be located.|
12009|Request to InternetQueryOption or InternetSetOption specified an invalid option value.|
12010|Length of an option supplied to InternetQueryOption or InternetSetOption is incorrect for the type of option specified.|
12011|Request option can not be set, only queried. |
12012|Win32 Internet support is being shutdown or unloaded.|
12013|Request to connect and login to an FTP server could not be completed because the supplied user name is incorrect.|
12014|Request to connect and login to an FTP server could not be completed because the supplied password is incorrect. |
12015|Request to connect to and login to an FTP server failed.|
12016|Requested operation is invalid. |
12017|Operation was canceled, usually because the handle on which the request was operating was closed before the operation completed.|
12018|Type of handle supplied is incorrect for this operation.|
12019|Requested operation can not be carried out because the handle supplied is not in the correct state.|
12020|Request can not be made via a proxy.|
12021|Required registry value could not be located. |
12022|Required registry value was located but is an incorrect type or has an invalid value.|
12023|Direct network access cannot be made at this time. |
12024|Asynchronous request could not be made because a zero context value was supplied.|
12025|Asynchronous request could not be made because a callback function has not been set.|
12026|Required operation could not be completed because one or more requests are pending.|
12027|Format of the request is invalid.|
12028|Requested item could not be located.|
12029|Attempt to connect to the server failed.|
12030|Connection with the server has been terminated.|
12031|Connection with the server has been reset.|
12036|Request failed because the handle already exists.|
12003|Extended error returned from server.|
12000|Error details not available.|
12032|Error details not available.|)")) {
    EXPECT_EQ(http_.HttpErrorText(static_cast<std::uint32_t>(std::stoi(row[0]))), row[1]) << row[0];
  }
  machine_.surroundings().web_last_response = std::string{"530 no\0more", 11};
  EXPECT_EQ(http_.HttpErrorText(12003), "530 no");
  machine_.surroundings().web_last_response = std::string(300, 'x');
  EXPECT_EQ(http_.HttpErrorText(12003), std::string(256, 'x'));
}

}  // namespace
}  // namespace ondura
