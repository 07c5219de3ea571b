#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <map>
#include <thread>

#include "TemporaryRoot.h"
#include "contract_web.h"
#include "machines/posix/host_io.h"
#include "support/NotificationServer.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;
using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

class PosixWeb : public TestedWeb {
 public:
  WebRequests& web() override { return made_.owner->machine().web; }
  std::string HostOf(std::string_view options) override { return Server(options).address(); }
  std::string NewestPost(std::string_view options) override { return Server(options).Posts().back(); }

 private:
  NotificationServer& Server(std::string_view options) {
    std::unique_ptr<NotificationServer>& server = servers_[std::string{options}];
    if (!server) {
      const auto words = options.empty() ? std::vector<std::string>{} : Split(options, " ");
      server = std::make_unique<NotificationServer>(words, static_cast<unsigned>(servers_.size() - 1));
      web().TrustAuthority(server->Authority());
    }
    return *server;
  }

  TemporaryRoot root_;
  PosixMachineResult made_ = root_.Make();
  std::map<std::string, std::unique_ptr<NotificationServer>> servers_;
};

std::unique_ptr<TestedWeb> MakePosixWeb() { return std::make_unique<PosixWeb>(); }

INSTANTIATE_TEST_SUITE_P(Posix, WebContract, testing::Values(&MakePosixWeb));

// Takes one connection, keeps what comes up to an empty line, says `answer`, and stays until it or the other
// side ends.
class PlainServer {
 public:
  explicit PlainServer(std::string answer) : answer_(std::move(answer)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    const bool listens = bind(listener_.get(), general, size) == 0 && listen(listener_.get(), 1) == 0 &&
                         getsockname(listener_.get(), general, &size) == 0;
    if (!listens) throw std::runtime_error("no listener");
    port_ = ntohs(address.sin_port);
    thread_ = std::jthread([this] { Serve(); });
  }
  ~PlainServer() {
    for (const Fd* end : {&listener_, &connection_}) shutdown(end->get(), SHUT_RDWR);
  }
  PlainServer(const PlainServer&) = delete;
  PlainServer& operator=(const PlainServer&) = delete;

  [[nodiscard]] std::uint16_t port() const { return port_; }

  // What came before the answer.
  [[nodiscard]] std::string Kept() { return kept_.get_future().get(); }

 private:
  void Serve() {
    connection_ = Fd{accept(listener_.get(), nullptr, nullptr)};
    std::string head;
    char byte = 0;
    while (!head.ends_with("\r\n\r\n") && read(connection_.get(), &byte, 1) == 1) head += byte;
    kept_.set_value(head);
    send(connection_.get(), answer_.data(), answer_.size(), MSG_NOSIGNAL);
    if (answer_.empty()) shutdown(connection_.get(), SHUT_RDWR);
    while (read(connection_.get(), &byte, 1) == 1) continue;
  }

  std::string answer_;
  Fd listener_{socket(AF_INET, SOCK_STREAM, 0)};
  Fd connection_;
  std::promise<std::string> kept_;
  std::uint16_t port_ = 0;
  std::jthread thread_;
};

class PosixWebTest : public testing::Test {
 protected:
  InternetHandle NewRequest(const std::string& host, std::uint16_t port, const WebSession& session = {},
                            std::uint32_t flags = 0) {
    return web_.OpenRequest(web_.Connect(web_.Open(session), host, port), {"GET", "/x", "HTTP/1.1", flags});
  }

  static PosixMachineResult MakeImpatient(const TemporaryRoot& root) {
    root.Put("machine.ini", "[Internet]\nTimeout=300\n");
    return root.Make();
  }

  TemporaryRoot root_;
  PosixMachineResult made_ = MakeImpatient(root_);
  WebRequests& web_ = made_.owner->machine().web;
};

TEST_F(PosixWebTest, AnAddedAuthorityCountsBesideTheSystemsAndNoOtherDoes) {
  const NotificationServer known{{}, 0};
  const NotificationServer added{{}, 1};
  setenv("SSL_CERT_FILE", known.AuthorityFile().c_str(), 1);
  EXPECT_FALSE(web_.Send(NewRequest(added.address(), 11900, {}, kRequestSecure), ""));
  EXPECT_EQ(web_.LastError(), kInternetInvalidAuthority);
  EXPECT_TRUE(web_.TrustAuthority(added.Authority()));
  EXPECT_TRUE(web_.Send(NewRequest(added.address(), 11900, {}, kRequestSecure), "")) << web_.LastError();
  EXPECT_TRUE(web_.Send(NewRequest(known.address(), 11900, {}, kRequestSecure), "")) << web_.LastError();
}

TEST_F(PosixWebTest, WhatAServerSaysIsTakenForWhatItIs) {
  const std::string endless = "HTTP/1.1 200 OK\r\n\r\n" + std::string(1'000'000, 'x');
  const struct {
    const char* story;
    std::string answer;
    std::uint32_t status;  // or 0
    std::uint32_t error;
  } cases[] = {
      {"a redirect is not followed", "HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:1/\r\n\r\n", 302, 0},
      {"a word before the answer is none", "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 204 None\r\n\r\n", 204, 0},
      {"a body without an end is no failure", endless, 200, 0},
      {"a body that does not come is none", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", 200, 0},
      {"what is no head is no answer", "220 mail.example ESMTP\r\n\r\n", 0, kInternetInvalidResponse},
      {"half a head is no answer", "HTTP/1.1 200 OK\r\nLocation: /", 0, kInternetTimeout},
      {"an end without an answer", "", 0, kInternetConnectionAborted},
  };
  for (const auto& [story, answer, status, error] : cases) {
    const PlainServer server{answer};
    const InternetHandle request = NewRequest("127.0.0.1", server.port());
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(web_.Send(request, ""), error == 0) << story;
    EXPECT_LT(std::chrono::steady_clock::now() - begin, milliseconds{10'000}) << story;
    EXPECT_EQ(error == 0 ? 0 : web_.LastError(), error) << story;
    EXPECT_EQ(web_.StatusCode(request).value_or(0), status) << story;
  }
}

TEST_F(PosixWebTest, AProxyIsUsedWhereTheSessionNamesOneAndNotWhereTheEnvironmentDoes) {
  setenv("http_proxy", "http://127.0.0.1:1", 1);
  PlainServer plain{"HTTP/1.1 200 OK\r\n\r\n"};
  ASSERT_TRUE(web_.Send(NewRequest("127.0.0.1", plain.port()), "")) << web_.LastError();
  EXPECT_THAT(plain.Kept(), StartsWith("GET /x HTTP/1.1\r\n"));

  PlainServer proxy{"HTTP/1.1 407 Who are you\r\n\r\n"};
  const std::string name = "https=127.0.0.1:1 http=127.0.0.1:" + std::to_string(proxy.port());
  const InternetHandle request = NewRequest("far.invalid", 8080, {"http generic", 3, name});
  web_.SetText(request, InternetOption::kProxyUserName, "ann");
  web_.SetText(request, InternetOption::kProxyPassword, "secret");
  ASSERT_TRUE(web_.Send(request, "")) << web_.LastError();
  EXPECT_THAT(web_.StatusCode(request), Optional(407U));
  const std::string asked = proxy.Kept();
  EXPECT_THAT(asked, StartsWith("GET http://far.invalid:8080/x HTTP/1.1\r\n"));
  EXPECT_THAT(asked, HasSubstr("Proxy-Authorization: Basic YW5uOnNlY3JldA==\r\n"));

  PlainServer tunnel{"HTTP/1.1 403 Not there\r\n\r\n"};
  const std::string secure_name = "127.0.0.1:" + std::to_string(tunnel.port());
  const InternetHandle secure = NewRequest("far.invalid", 11900, {"", 3, secure_name}, kRequestSecure);
  ASSERT_TRUE(web_.Send(secure, "")) << web_.LastError();
  EXPECT_THAT(web_.StatusCode(secure), Optional(403U));
  EXPECT_THAT(tunnel.Kept(), StartsWith("CONNECT far.invalid:11900 HTTP/1.1\r\n"));
}

TEST_F(PosixWebTest, ABodyThatIsNotTakenEndsTheExchange) {
  const NotificationServer server{{"--drop"}};
  web_.TrustAuthority(server.Authority());
  const InternetHandle request = NewRequest(server.address(), 11900, {}, kRequestSecure);
  EXPECT_FALSE(web_.Send(request, std::string(8'000'000, 'x')));
  EXPECT_THAT(web_.LastError(), testing::AnyOf(kInternetConnectionAborted, kInternetConnectionReset));
}

}  // namespace

}  // namespace ondura
