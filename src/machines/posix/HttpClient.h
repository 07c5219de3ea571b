#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondura {

struct HttpHeader {
  std::string name;
  std::string value;
};

// How long an exchange waits at most for each of its parts.
struct HttpTimeouts {
  std::chrono::milliseconds connect{60'000};  // the name, the connection and its encryption
  std::chrono::milliseconds send{30'000};     // between two pieces of the request
  std::chrono::milliseconds receive{30'000};  // from the end of the request to the end of the answer's head
};

struct OutgoingRequest {
  bool secure = false;
  std::string host;
  std::uint16_t port = 0;  // 0 for the usual one
  std::string verb;
  std::string target;  // begins with a slash
  bool version_1_0 = false;
  std::string agent;
  std::vector<HttpHeader> headers;
  std::string proxy;  // host:port; empty for none
  std::string proxy_user;
  std::string proxy_password;
  HttpTimeouts timeouts;
};

struct IncomingHead {
  std::uint32_t status = 0;
  std::string version;
  std::string reason;
  std::vector<HttpHeader> headers;
};

struct HttpOutcome {
  std::uint32_t error = 0;           // the platform's number; 0 for none
  std::optional<IncomingHead> head;  // there without an error
};

// Exchanges over HTTP and TLS 1.2 or newer, each on a connection of its own that is closed after it. A
// server's certificate has to name its host and come from an authority that the host's OpenSSL trusts, or one
// of those added here. Neither the environment's proxies nor redirects are followed.
class HttpClient {
 public:
  HttpClient();
  ~HttpClient();
  HttpClient(const HttpClient&) = delete;
  HttpClient& operator=(const HttpClient&) = delete;

  // False for a text without a certificate in PEM form.
  bool TrustAuthority(std::string_view certificates);

  // Done when the answer's head is there; of its body a little is waited for, so that the server can end in
  // order, and dropped.
  HttpOutcome Exchange(const OutgoingRequest& request, std::string_view body);

 private:
  class Library;
  class Authorities;

  std::unique_ptr<Library> library_;
  std::unique_ptr<Authorities> authorities_;
};

}  // namespace ondura
