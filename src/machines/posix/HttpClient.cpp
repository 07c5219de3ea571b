#include "machines/posix/HttpClient.h"

#include <curl/curl.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>

#include <algorithm>
#include <limits>

#include "platform/WebRequests.h"
#include "text/text.h"

namespace ondura {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t kHeadLimitBytes = 262'144;
constexpr std::size_t kBodyLimitBytes = 65'536;
constexpr milliseconds kBodyWait{500};
constexpr milliseconds kLongestPoll{1'000};

constexpr std::uint32_t kLowestFinalStatus = 200;

template <auto kFree>
struct FreeWith {
  template <typename Value>
  void operator()(Value* value) const {
    kFree(value);
  }
};

using Easy = std::unique_ptr<CURL, FreeWith<curl_easy_cleanup>>;
using Multi = std::unique_ptr<CURLM, FreeWith<curl_multi_cleanup>>;
using Url = std::unique_ptr<CURLU, FreeWith<curl_url_cleanup>>;
using Lines = std::unique_ptr<curl_slist, FreeWith<curl_slist_free_all>>;
using Certificate = std::unique_ptr<X509, FreeWith<X509_free>>;
using Bio = std::unique_ptr<BIO, FreeWith<BIO_free>>;

// What is wrong with a certificate that was refused, by OpenSSL's word on it.
std::uint32_t ErrorOfCertificate(long verified) {
  switch (verified) {
    case X509_V_OK:               // the chain holds, so it is the host's name that does not
    case X509_V_ERR_UNSPECIFIED:  // what libcurl says until it has compared the names
    case X509_V_ERR_HOSTNAME_MISMATCH:
    case X509_V_ERR_IP_ADDRESS_MISMATCH:
      return kInternetCertificateNameInvalid;
    case X509_V_ERR_CERT_NOT_YET_VALID:
    case X509_V_ERR_CERT_HAS_EXPIRED:
      return kInternetCertificateDateInvalid;
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT:
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY:
    case X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE:
    case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
    case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
    case X509_V_ERR_CERT_UNTRUSTED:
      return kInternetInvalidAuthority;
    default:
      return kInternetSecurityChannelError;
  }
}

std::uint32_t Translated(CURLcode code, long verified) {
  switch (code) {
    case CURLE_OK:
      return 0;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return kInternetNameNotResolved;
    case CURLE_COULDNT_CONNECT:
      return kInternetCannotConnect;
    case CURLE_OPERATION_TIMEDOUT:
      return kInternetTimeout;
    case CURLE_GOT_NOTHING:
      return kInternetConnectionAborted;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
      return kInternetConnectionReset;
    case CURLE_PEER_FAILED_VERIFICATION:
      return ErrorOfCertificate(verified);
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
      return kInternetSecurityChannelError;
    case CURLE_UNSUPPORTED_PROTOCOL:  // an answer without a head
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_WRITE_ERROR:  // a head without an end
    case CURLE_BAD_CONTENT_ENCODING:
      return kInternetInvalidResponse;
    case CURLE_URL_MALFORMAT:
      return kInternetInvalidUrl;
    default:
      return kInternetInternalError;
  }
}

// Empty where a URL can't hold the host.
Url UrlOf(const OutgoingRequest& request) {
  Url url{curl_url()};
  const std::string port = std::to_string(request.port);
  const bool made =
      url && curl_url_set(url.get(), CURLUPART_SCHEME, request.secure ? "https" : "http", 0) == CURLUE_OK &&
      curl_url_set(url.get(), CURLUPART_HOST, request.host.c_str(), 0) == CURLUE_OK &&
      curl_url_set(url.get(), CURLUPART_PATH, "/", 0) == CURLUE_OK &&
      (request.port == 0 || curl_url_set(url.get(), CURLUPART_PORT, port.c_str(), 0) == CURLUE_OK);
  return made ? std::move(url) : nullptr;
}

Lines LinesOf(const std::vector<HttpHeader>& headers) {
  Lines lines;
  const auto append = [&lines](const std::string& line) {
    curl_slist* const longer = curl_slist_append(lines.get(), line.c_str());
    if (longer == nullptr) return;
    static_cast<void>(lines.release());
    lines.reset(longer);
  };
  for (const HttpHeader& header : headers) {
    append(header.value.empty() ? header.name + ";" : header.name + ": " + header.value);
  }
  // A name without a value keeps libcurl from adding a header of its own.
  for (const char* own : {"Accept", "Expect", "Content-Type"}) {
    const bool given = std::ranges::any_of(
        headers, [own](const HttpHeader& header) { return EqualsIgnoringCase(header.name, own); });
    if (!given) append(std::string{own} + ":");
  }
  return lines;
}

// A plain request to a proxy names the whole address.
std::string TargetOf(const OutgoingRequest& request) {
  if (request.proxy.empty() || request.secure) return request.target;
  const std::string port = request.port == 0 ? "" : ":" + std::to_string(request.port);
  return "http://" + request.host + port + request.target;
}

// The head of an answer, line by line; those that only say "go on" are dropped when the next one begins.
class HeadReader {
 public:
  // False when the head is longer than any that is meant.
  bool Take(std::string_view line) {
    bytes_ += line.size();
    while (line.ends_with('\n') || line.ends_with('\r')) line.remove_suffix(1);
    if (complete_) return true;  // what trails a body in pieces
    if (line.starts_with("HTTP/")) {
      TakeStatus(line);
    } else if (line.empty()) {
      complete_ = head_.status >= kLowestFinalStatus;
    } else if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
      head_.headers.push_back(
          {std::string{Trim(line.substr(0, colon))}, std::string{Trim(line.substr(colon + 1))}});
    }
    return bytes_ <= kHeadLimitBytes;
  }

  [[nodiscard]] bool complete() const { return complete_; }
  [[nodiscard]] const IncomingHead& head() const { return head_; }

 private:
  void TakeStatus(std::string_view line) {
    head_ = {};
    const std::size_t version_end = std::min(line.find(' '), line.size());
    head_.version = line.substr(0, version_end);
    line.remove_prefix(version_end);
    line = Trim(line);
    const std::size_t status_end = std::min(line.find(' '), line.size());
    head_.status = static_cast<std::uint32_t>(ParseInt16(line.substr(0, status_end)).value_or(0));
    head_.reason = Trim(line.substr(status_end));
  }

  IncomingHead head_;
  std::size_t bytes_ = 0;
  bool complete_ = false;
};

// One request on its way.
class Transfer {
 public:
  Transfer(const OutgoingRequest& request, std::string_view body, X509_STORE* authorities)
      : request_(request), body_(body), authorities_(authorities) {}
  ~Transfer() {
    if (added_) curl_multi_remove_handle(multi_.get(), easy_.get());
  }
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  HttpOutcome Run() {
    if (!easy_ || !multi_) return {kInternetInternalError, std::nullopt};
    if (!url_) return {kInternetInvalidUrl, std::nullopt};
    SetUp();
    added_ = curl_multi_add_handle(multi_.get(), easy_.get()) == CURLM_OK;
    if (!added_) return {kInternetInternalError, std::nullopt};
    return Judged(Drive());
  }

 private:
  template <typename Value>
  void Set(CURLoption option, Value value) {
    curl_easy_setopt(easy_.get(), option, value);
  }

  void SetUp() {
    Set(CURLOPT_NOSIGNAL, 1L);
    Set(CURLOPT_CURLU, url_.get());
    Set(CURLOPT_REQUEST_TARGET, target_.c_str());
    Set(CURLOPT_HTTP_VERSION,
        static_cast<long>(request_.version_1_0 ? CURL_HTTP_VERSION_1_0 : CURL_HTTP_VERSION_1_1));
    Set(CURLOPT_USERAGENT, request_.agent.c_str());
    Set(CURLOPT_HTTPHEADER, lines_.get());
    SetBody();
    SetEncryption();
    SetProxy();
    Set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request_.timeouts.connect.count()));
    Set(CURLOPT_PREREQFUNCTION, &Transfer::OnConnected);
    Set(CURLOPT_PREREQDATA, this);
    Set(CURLOPT_HEADERFUNCTION, &Transfer::OnHeader);
    Set(CURLOPT_HEADERDATA, this);
    Set(CURLOPT_WRITEFUNCTION, &Transfer::OnBody);
    Set(CURLOPT_WRITEDATA, this);
  }

  void SetBody() {
    if (request_.verb == "HEAD") {
      Set(CURLOPT_NOBODY, 1L);
    } else if (request_.verb != "GET" || !body_.empty()) {
      Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body_.size()));
      Set(CURLOPT_POSTFIELDS, body_.empty() ? "" : body_.data());
    }
    Set(CURLOPT_CUSTOMREQUEST, request_.verb.c_str());
  }

  // The authorities are put together here alone, without libcurl's own idea of where the system's are.
  void SetEncryption() {
    Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    Set(CURLOPT_SSL_VERIFYPEER, 1L);
    Set(CURLOPT_SSL_VERIFYHOST, 2L);
    Set(CURLOPT_SSL_ENABLE_ALPN, 0L);
    Set(CURLOPT_CAINFO, static_cast<const char*>(nullptr));
    Set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    Set(CURLOPT_SSL_CTX_FUNCTION, &Transfer::OnEncryption);
    Set(CURLOPT_SSL_CTX_DATA, this);
  }

  void SetProxy() {
    Set(CURLOPT_PROXY, request_.proxy.c_str());
    Set(CURLOPT_NOPROXY, "");
    Set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    if (request_.proxy.empty() || request_.proxy_user.empty()) return;
    Set(CURLOPT_PROXYUSERNAME, request_.proxy_user.c_str());
    Set(CURLOPT_PROXYPASSWORD, request_.proxy_password.c_str());
  }

  // The end of the transfer, or a time-out.
  CURLcode Drive() {
    while (true) {
      int running = 0;
      if (curl_multi_perform(multi_.get(), &running) != CURLM_OK) return CURLE_FAILED_INIT;
      if (running == 0) break;
      const auto left = std::chrono::ceil<milliseconds>(Deadline() - Clock::now());
      if (left.count() <= 0) return CURLE_OPERATION_TIMEDOUT;
      const int poll_ms = static_cast<int>(std::min(left, kLongestPoll).count());
      if (curl_multi_poll(multi_.get(), nullptr, 0, poll_ms, nullptr) != CURLM_OK) return CURLE_FAILED_INIT;
    }
    int waiting = 0;
    const CURLMsg* const message = curl_multi_info_read(multi_.get(), &waiting);
    return message == nullptr ? CURLE_FAILED_INIT : message->data.result;
  }

  // When the part that runs now has taken too long.
  Clock::time_point Deadline() {
    if (reader_.complete()) return head_at_ + kBodyWait;
    if (!connected_) return Clock::time_point::max();  // libcurl watches over this one
    curl_off_t sent = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
    if (sent != sent_) {
      sent_ = sent;
      progress_at_ = Clock::now();
    }
    const bool all = sent_ >= static_cast<curl_off_t>(body_.size());
    return progress_at_ + (all ? request_.timeouts.receive : request_.timeouts.send);
  }

  HttpOutcome Judged(CURLcode code) {
    if (reader_.complete()) return {0, reader_.head()};
    long from_proxy = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_HTTP_CONNECTCODE, &from_proxy);
    if (from_proxy > kLowestFinalStatus) {
      return {0, IncomingHead{static_cast<std::uint32_t>(from_proxy), "HTTP/1.1", "", {}}};
    }
    long verified = X509_V_OK;
    curl_easy_getinfo(easy_.get(), CURLINFO_SSL_VERIFYRESULT, &verified);
    const std::uint32_t error = Translated(code, verified);
    return {error == 0 ? kInternetInvalidResponse : error, std::nullopt};
  }

  static int OnConnected(void* transfer, char*, char*, int, int) {
    auto* const self = static_cast<Transfer*>(transfer);
    self->connected_ = true;
    self->progress_at_ = Clock::now();
    return CURL_PREREQFUNC_OK;
  }

  static std::size_t OnHeader(char* bytes, std::size_t size, std::size_t count, void* transfer) {
    auto* const self = static_cast<Transfer*>(transfer);
    if (!self->reader_.Take({bytes, size * count})) return 0;
    if (self->reader_.complete()) self->head_at_ = Clock::now();
    return size * count;
  }

  static std::size_t OnBody(char*, std::size_t size, std::size_t count, void* transfer) {
    auto* const self = static_cast<Transfer*>(transfer);
    self->body_bytes_ += size * count;
    return self->body_bytes_ <= kBodyLimitBytes ? size * count : 0;
  }

  static CURLcode OnEncryption(CURL*, void* context, void* transfer) {
    SSL_CTX_set1_cert_store(static_cast<SSL_CTX*>(context), static_cast<Transfer*>(transfer)->authorities_);
    return CURLE_OK;
  }

  const OutgoingRequest& request_;
  std::string_view body_;
  X509_STORE* authorities_;
  // What libcurl looks at while it works lives longer than its handles.
  std::string target_ = TargetOf(request_);
  Url url_ = UrlOf(request_);
  Lines lines_ = LinesOf(request_.headers);
  Easy easy_{curl_easy_init()};
  Multi multi_{curl_multi_init()};
  bool added_ = false;

  HeadReader reader_;
  bool connected_ = false;
  curl_off_t sent_ = 0;
  Clock::time_point progress_at_;
  Clock::time_point head_at_;
  std::size_t body_bytes_ = 0;
};

}  // namespace

// The library counts who has it ready.
class HttpClient::Library {
 public:
  Library() { curl_global_init(CURL_GLOBAL_DEFAULT); }
  ~Library() { curl_global_cleanup(); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
};

// The system's authorities and the added ones.
class HttpClient::Authorities {
 public:
  Authorities() { X509_STORE_set_default_paths(store_.get()); }

  bool Add(std::string_view certificates) {
    if (certificates.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return false;
    const Bio text{BIO_new_mem_buf(certificates.data(), static_cast<int>(certificates.size()))};
    bool added = false;
    while (
        const Certificate next{text ? PEM_read_bio_X509(text.get(), nullptr, nullptr, nullptr) : nullptr}) {
      added = X509_STORE_add_cert(store_.get(), next.get()) == 1 || added;
    }
    ERR_clear_error();
    return added;
  }

  [[nodiscard]] X509_STORE* store() const { return store_.get(); }

 private:
  std::unique_ptr<X509_STORE, FreeWith<X509_STORE_free>> store_{X509_STORE_new()};
};

HttpClient::HttpClient() = default;
HttpClient::~HttpClient() = default;

bool HttpClient::TrustAuthority(std::string_view certificates) {
  if (!authorities_) authorities_ = std::make_unique<Authorities>();
  return authorities_->Add(certificates);
}

HttpOutcome HttpClient::Exchange(const OutgoingRequest& request, std::string_view body) {
  if (!library_) library_ = std::make_unique<Library>();
  if (!authorities_) authorities_ = std::make_unique<Authorities>();
  return Transfer{request, body, authorities_->store()}.Run();
}

}  // namespace ondura
