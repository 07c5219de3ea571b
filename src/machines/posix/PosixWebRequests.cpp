#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "machines/posix/HttpClient.h"
#include "machines/posix/ports.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t kNamedProxy = 3;
constexpr std::uint32_t kAddHeader = 0x20000000;
constexpr std::uint32_t kReplaceHeader = 0x80000000;

constexpr std::uint32_t kStatusCodeNumber = 19;
constexpr std::size_t kHeaderLimitCharacters = 1023;

struct NumberedHeader {
  std::uint32_t number;
  std::string_view name;
};

constexpr std::array<NumberedHeader, 21> kHeaderNumbers = {{
    {1, "Content-Type"},
    {5, "Content-Length"},
    {6, "Content-Language"},
    {7, "Allow"},
    {9, "Date"},
    {10, "Expires"},
    {11, "Last-Modified"},
    {17, "Pragma"},
    {23, "Connection"},
    {29, "Content-Encoding"},
    {33, "Location"},
    {36, "Retry-After"},
    {37, "Server"},
    {40, "WWW-Authenticate"},
    {41, "Proxy-Authenticate"},
    {42, "Accept-Ranges"},
    {43, "Set-Cookie"},
    {49, "Cache-Control"},
    {53, "Content-Range"},
    {54, "ETag"},
    {63, "Transfer-Encoding"},
}};
constexpr std::uint32_t kVersionNumber = 18;
constexpr std::uint32_t kReasonNumber = 20;

// The proxy for requests of `scheme` from "host:port" or "http=host:port https=host:port".
std::string ProxyFor(std::string_view scheme, std::string_view proxies) {
  for (const std::string& entry : Split(ReplaceAll(proxies, ";", " "), " ")) {
    const std::size_t equals = entry.find('=');
    if (entry.empty()) continue;
    if (equals != std::string::npos && !EqualsIgnoringCase(entry.substr(0, equals), scheme)) continue;
    const std::string proxy = equals == std::string::npos ? entry : entry.substr(equals + 1);
    return proxy.rfind(':') == std::string::npos ? proxy + ":80" : proxy;
  }
  return {};
}

// A path that a request's first line can hold.
std::string TargetOf(std::string_view object) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string target = object.starts_with('/') ? "" : "/";
  for (const char c : object) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte > ' ' && byte < 0x7F) {
      target += c;
    } else {
      target.append({'%', kDigits[byte >> 4U], kDigits[byte & 0xFU]});
    }
  }
  return target;
}

// Sessions, connections and requests are numbers of one table. Each carries what the one it was opened on
// knew at that time, and goes when that one is closed.
class PosixWebRequests : public WebRequests {
 public:
  explicit PosixWebRequests(const MachineSettings& settings) : longest_wait_(settings.web_timeout) {}

  InternetHandle Open(const WebSession& session) override {
    Handle opened;
    opened.request.agent = session.agent;
    if (session.access_type == kNamedProxy) opened.proxies = session.proxy_name;
    return Add(std::move(opened));
  }

  InternetHandle Connect(InternetHandle session, std::string_view host, std::uint16_t port) override {
    const Handle* const parent = Find(session, Level::kSession);
    if (parent == nullptr) return kNoInternet;
    if (host.empty()) {
      FailWith(kInternetInvalidParameter);
      return kNoInternet;
    }
    Handle opened = Below(session, *parent, Level::kConnection);
    opened.request.host = host;
    opened.request.port = port;
    return Add(std::move(opened));
  }

  InternetHandle OpenRequest(InternetHandle connection, const WebRequest& request) override {
    const Handle* const parent = Find(connection, Level::kConnection);
    if (parent == nullptr) return kNoInternet;
    Handle opened = Below(connection, *parent, Level::kRequest);
    opened.request.secure = (request.flags & kRequestSecure) != 0;
    opened.request.verb = request.verb.empty() ? "GET" : request.verb;
    opened.request.target = TargetOf(request.object);
    opened.request.version_1_0 = request.version == "HTTP/1.0";
    opened.request.proxy = ProxyFor(opened.request.secure ? "https" : "http", opened.proxies);
    if ((request.flags & kRequestReload) != 0) opened.request.headers.push_back({"Pragma", "no-cache"});
    return Add(std::move(opened));
  }

  bool AddHeaders(InternetHandle request, std::string_view headers, std::uint32_t flags) override {
    Handle* const opened = Find(request, Level::kRequest);
    if (opened == nullptr) return false;
    for (const std::string& line : Split(ReplaceAll(headers, "\r\n", "\n"), "\n")) {
      if (!line.empty() && !AddHeader(opened->request.headers, line, flags)) return false;
    }
    return true;
  }

  bool SetNumber(InternetHandle handle, InternetOption option, std::uint32_t value) override {
    Handle* const opened = Find(handle);
    if (opened == nullptr) return false;
    HttpTimeouts& timeouts = opened->request.timeouts;
    switch (option) {
      case InternetOption::kConnectTimeout:
        timeouts.connect = milliseconds{value};
        return true;
      case InternetOption::kSendTimeout:
        timeouts.send = milliseconds{value};
        return true;
      case InternetOption::kReceiveTimeout:
        timeouts.receive = milliseconds{value};
        return true;
      default:
        return FailWith(kInternetInvalidOption);
    }
  }

  bool SetText(InternetHandle handle, InternetOption option, std::string_view value) override {
    Handle* const opened = Find(handle);
    if (opened == nullptr) return false;
    if (option == InternetOption::kProxyUserName) {
      opened->request.proxy_user = value;
    } else if (option == InternetOption::kProxyPassword) {
      opened->request.proxy_password = value;
    } else {
      return FailWith(kInternetInvalidOption);
    }
    return true;
  }

  // Nothing of the system's settings is kept that could be old.
  bool Notify(InternetOption option) override {
    const bool known = option == InternetOption::kRefresh || option == InternetOption::kSettingsChanged;
    return known || FailWith(kInternetInvalidOption);
  }

  bool Send(InternetHandle request, std::string_view body) override {
    Handle* const opened = Find(request, Level::kRequest);
    if (opened == nullptr) return false;
    OutgoingRequest outgoing = opened->request;
    HttpTimeouts& timeouts = outgoing.timeouts;
    for (milliseconds* wait : {&timeouts.connect, &timeouts.send, &timeouts.receive}) {
      *wait = std::clamp(*wait, milliseconds{1}, longest_wait_);
    }
    HttpOutcome outcome = client_.Exchange(outgoing, body);
    opened->head = std::move(outcome.head);
    return outcome.error == 0 || FailWith(outcome.error);
  }

  std::optional<std::uint32_t> StatusCode(InternetHandle request) override {
    const IncomingHead* const head = HeadOf(request);
    return head == nullptr ? std::nullopt : std::optional{head->status};
  }

  std::optional<std::string> Header(InternetHandle request, std::uint32_t number) override {
    const IncomingHead* const head = HeadOf(request);
    if (head == nullptr) return std::nullopt;
    if (number == kStatusCodeNumber) return std::to_string(head->status);
    if (number == kVersionNumber) return head->version;
    if (number == kReasonNumber) return head->reason;
    const auto known = std::ranges::find(kHeaderNumbers, number, &NumberedHeader::number);
    if (known != kHeaderNumbers.end()) {
      for (const HttpHeader& header : head->headers) {
        if (EqualsIgnoringCase(header.name, known->name))
          return header.value.substr(0, kHeaderLimitCharacters);
      }
    }
    FailWith(kInternetHeaderNotFound);
    return std::nullopt;
  }

  // A server of this protocol says what it has to say in its answer.
  std::optional<std::string> LastResponse(std::uint32_t /*limit*/) override { return std::string{}; }

  void Close(InternetHandle handle) override {
    if (handles_.erase(handle) == 0) return;
    const auto child = [this, handle] {
      return std::ranges::find_if(handles_,
                                  [handle](const auto& entry) { return entry.second.parent == handle; });
    };
    for (auto found = child(); found != handles_.end(); found = child()) Close(found->first);
  }

  std::uint32_t LastError() override { return last_error_; }

  bool TrustAuthority(std::string_view certificate) override { return client_.TrustAuthority(certificate); }

 private:
  enum class Level { kSession, kConnection, kRequest };

  struct Handle {
    Level level = Level::kSession;
    InternetHandle parent = kNoInternet;
    std::string proxies;
    OutgoingRequest request;  // as far as it is known
    std::optional<IncomingHead> head;
  };

  static Handle Below(InternetHandle parent, const Handle& known, Level level) {
    Handle opened = known;
    opened.level = level;
    opened.parent = parent;
    return opened;
  }

  InternetHandle Add(Handle opened) {
    handles_[++last_handle_] = std::move(opened);
    return last_handle_;
  }

  Handle* Find(InternetHandle handle) {
    const auto found = handles_.find(handle);
    if (found != handles_.end()) return &found->second;
    FailWith(kInternetInvalidHandle);
    return nullptr;
  }

  Handle* Find(InternetHandle handle, Level level) {
    Handle* const found = Find(handle);
    if (found == nullptr || found->level == level) return found;
    FailWith(kInternetInvalidHandle);
    return nullptr;
  }

  const IncomingHead* HeadOf(InternetHandle request) {
    const Handle* const opened = Find(request, Level::kRequest);
    if (opened == nullptr) return nullptr;
    if (!opened->head) FailWith(kInternetInvalidHandleState);
    return opened->head ? &*opened->head : nullptr;
  }

  bool AddHeader(std::vector<HttpHeader>& headers, std::string_view line, std::uint32_t flags) {
    const std::size_t colon = line.find(':');
    const std::string_view name = Trim(line.substr(0, colon));
    const bool bad = colon == std::string_view::npos || name.empty() ||
                     std::ranges::any_of(line, [](char c) { return c >= 0 && c < ' ' && c != '\t'; });
    if (bad) return FailWith(kInternetInvalidHeader);
    HttpHeader header{std::string{name}, std::string{Trim(line.substr(colon + 1))}};
    const auto erased =
        (flags & kReplaceHeader) == 0 ? 0 : std::erase_if(headers, [&header](const HttpHeader& present) {
          return EqualsIgnoringCase(present.name, header.name);
        });
    if (erased == 0 && (flags & kAddHeader) == 0) return FailWith(kInternetHeaderNotFound);
    if (!header.value.empty()) headers.push_back(std::move(header));
    return true;
  }

  bool FailWith(std::uint32_t error) {
    last_error_ = error;
    return false;
  }

  milliseconds longest_wait_;
  HttpClient client_;
  std::map<InternetHandle, Handle> handles_;
  InternetHandle last_handle_ = kNoInternet;
  std::uint32_t last_error_ = 0;
};

}  // namespace

std::unique_ptr<WebRequests> MakePosixWebRequests(const MachineSettings& settings) {
  return std::make_unique<PosixWebRequests>(settings);
}

}  // namespace ondura
