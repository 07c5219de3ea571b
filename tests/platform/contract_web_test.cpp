#include "contract_web.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <vector>

#include "contract.h"
#include "text/text.h"

namespace ondura {

namespace {

using testing::ElementsAre;
using testing::Optional;

constexpr std::uint32_t kContentLength = 5;
constexpr WebRequest kPost{"POST", "/cgi-bin/Notify", "HTTP/1.0", kRequestReload | kRequestSecure};

// Without the headers in which the platforms differ and that say nothing about the request.
struct Arrived {
  std::string first_line;
  std::vector<std::string> headers;  // sorted
  std::string body;

  explicit Arrived(std::string_view bytes) {
    const std::size_t head_end = bytes.find("\r\n\r\n");
    headers = Split(bytes.substr(0, head_end), "\r\n");
    body = bytes.substr(std::min(head_end + 4, bytes.size()));
    first_line = headers.front();
    headers.erase(headers.begin());
    std::erase_if(headers, [](const std::string& header) {
      return StartsWithIgnoringCase(header, "Pragma:") || StartsWithIgnoringCase(header, "Cache-Control:") ||
             StartsWithIgnoringCase(header, "Connection:");
    });
    std::ranges::sort(headers);
  }
};

TEST_P(PlatformContract, AWebHandleServesForWhatItIsUntilItOrItsParentIsClosed) {
  WebRequests& web = machine_.web;
  const InternetHandle session = web.Open({"http generic", 0, ""});
  const InternetHandle connection = web.Connect(session, "127.0.0.1", 1);
  const InternetHandle request = web.OpenRequest(connection, kPost);
  ASSERT_TRUE(session != kNoInternet && connection != kNoInternet && request != kNoInternet);
  EXPECT_TRUE(web.AddHeaders(request, "A: b\r\n", kAddOrReplaceHeader));
  EXPECT_TRUE(web.SetNumber(request, InternetOption::kReceiveTimeout, 45'000));
  EXPECT_TRUE(web.SetText(request, InternetOption::kProxyUserName, "ann"));
  EXPECT_TRUE(web.Notify(InternetOption::kSettingsChanged));
  EXPECT_EQ(web.Header(request, kContentLength), std::nullopt) << "nothing is answered yet";

  EXPECT_FALSE(web.AddHeaders(request, "no header", kAddOrReplaceHeader));
  EXPECT_EQ(web.LastError(), kInternetInvalidHeader);
  EXPECT_EQ(web.Connect(session, "", 1), kNoInternet);
  EXPECT_EQ(web.LastError(), kInternetInvalidParameter);
  EXPECT_EQ(web.OpenRequest(session, kPost), kNoInternet);
  EXPECT_FALSE(web.Send(connection, "")) << "a connection is no request";
  EXPECT_EQ(web.LastError(), kInternetInvalidHandle);

  web.Close(session);
  for (const InternetHandle closed : {connection, request, kNoInternet}) {
    EXPECT_EQ(web.OpenRequest(closed, kPost), kNoInternet);
    EXPECT_FALSE(web.AddHeaders(closed, "A: b", kAddOrReplaceHeader));
    EXPECT_FALSE(web.Send(closed, ""));
    EXPECT_EQ(web.LastError(), kInternetInvalidHandle);
    web.Close(closed);
  }
  EXPECT_FALSE(web.TrustAuthority("no certificate"));
}

TEST_P(WebContract, APostArrivesByteForByte) {
  const std::string host = tested_->HostOf("");
  const InternetHandle request = NewRequest(host, kPost);
  EXPECT_TRUE(
      web_.AddHeaders(request, "Content-Type: application/x-www-form-urlencoded\r\n", kAddOrReplaceHeader));
  const std::string body{"EMAIL=x\r\n&SUBJECT=\xE9\0", 20};
  ASSERT_TRUE(web_.Send(request, body)) << web_.LastError();
  EXPECT_THAT(web_.StatusCode(request), Optional(200U));
  EXPECT_THAT(web_.Header(request, kContentLength), Optional(std::string{"10"}));
  const Arrived arrived{tested_->NewestPost("")};
  EXPECT_EQ(arrived.first_line, "POST /cgi-bin/Notify HTTP/1.0");
  EXPECT_THAT(arrived.headers,
              ElementsAre("Content-Length: 20", "Content-Type: application/x-www-form-urlencoded",
                          "Host: " + host + ":11900", "User-Agent: http generic"));
  EXPECT_EQ(arrived.body, body);
}

TEST_P(WebContract, AnyVerbGoesOutWithTheHeadersAddedLast) {
  const std::string host = tested_->HostOf("");
  const InternetHandle request = NewRequest(host, {"PROPFIND", "a b%23c", "HTTP/1.1", kRequestSecure});
  EXPECT_TRUE(web_.AddHeaders(request, "Authorization: Basic old\r\nDepth: 0", kAddOrReplaceHeader));
  EXPECT_TRUE(web_.AddHeaders(request, "Authorization: Basic new\r\n", kAddOrReplaceHeader));
  const std::string body(1'500'000, 'x');
  ASSERT_TRUE(web_.Send(request, body)) << web_.LastError();
  const Arrived arrived{tested_->NewestPost("")};
  EXPECT_EQ(arrived.first_line, "PROPFIND /a%20b%23c HTTP/1.1");
  EXPECT_THAT(arrived.headers, ElementsAre("Authorization: Basic new", "Content-Length: 1500000", "Depth: 0",
                                           "Host: " + host + ":11900", "User-Agent: http generic"));
  EXPECT_EQ(arrived.body, body);
}

TEST_P(WebContract, ARefusalIsAnAnswerToo) {
  const InternetHandle request = NewRequest(tested_->HostOf("--status 503"), kPost);
  EXPECT_TRUE(web_.Send(request, "a=b"));
  EXPECT_THAT(web_.StatusCode(request), Optional(503U));
}

TEST_P(WebContract, EachFailureHasItsNumber) {
  const struct {
    const char* story;
    std::string host;
    std::uint32_t error;
  } cases[] = {
      {"a name that nobody has", "nobody.invalid", kInternetNameNotResolved},
      {"nobody listens", "127.255.255.254", kInternetCannotConnect},
      {"another host's certificate", tested_->HostOf("--certificate wrong-name"),
       kInternetCertificateNameInvalid},
      {"a certificate that is over", tested_->HostOf("--certificate expired"),
       kInternetCertificateDateInvalid},
      {"an unknown authority", tested_->HostOf("--certificate stranger"), kInternetInvalidAuthority},
      {"no answer comes", tested_->HostOf("--hang"), kInternetTimeout},
  };
  for (const auto& [story, host, error] : cases) {
    const InternetHandle request = NewRequest(host, kPost);
    web_.SetNumber(request, InternetOption::kReceiveTimeout, 500);
    EXPECT_FALSE(web_.Send(request, "a=b")) << story;
    EXPECT_EQ(web_.LastError(), tested_->Known(error)) << story;
  }
}

}  // namespace

}  // namespace ondura
