#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ondura {

// A session, connection or request; the number is the platform's own, so that a host may bring one along.
using InternetHandle = std::uintptr_t;
inline constexpr InternetHandle kNoInternet = 0;

// Flags of a request.
inline constexpr std::uint32_t kRequestReload = 0x80000000;  // never from a cache
inline constexpr std::uint32_t kRequestSecure = 0x00800000;  // over TLS, with a certificate that holds

// Added to a header that is not there yet, in place of one that is.
inline constexpr std::uint32_t kAddOrReplaceHeader = 0xA0000000;

// Options with their numbers on the platform. Time-outs are in milliseconds.
enum class InternetOption : std::uint32_t {
  kConnectTimeout = 2,
  kSendTimeout = 5,
  kReceiveTimeout = 6,
  kRefresh = 37,
  kSettingsChanged = 39,
  kProxyUserName = 43,
  kProxyPassword = 44,
};

// Numbers of LastError; the platform has more (12001 to 12175).
inline constexpr std::uint32_t kInternetInvalidParameter = 87;
inline constexpr std::uint32_t kInternetTimeout = 12002;
inline constexpr std::uint32_t kInternetExtendedError = 12003;
inline constexpr std::uint32_t kInternetInternalError = 12004;
inline constexpr std::uint32_t kInternetInvalidUrl = 12005;
inline constexpr std::uint32_t kInternetNameNotResolved = 12007;
inline constexpr std::uint32_t kInternetInvalidOption = 12009;
inline constexpr std::uint32_t kInternetInvalidHandle = 12018;
inline constexpr std::uint32_t kInternetInvalidHandleState = 12019;
inline constexpr std::uint32_t kInternetCannotConnect = 12029;
inline constexpr std::uint32_t kInternetConnectionAborted = 12030;
inline constexpr std::uint32_t kInternetConnectionReset = 12031;
inline constexpr std::uint32_t kInternetCertificateDateInvalid = 12037;
inline constexpr std::uint32_t kInternetCertificateNameInvalid = 12038;
inline constexpr std::uint32_t kInternetInvalidAuthority = 12045;
inline constexpr std::uint32_t kInternetHeaderNotFound = 12150;
inline constexpr std::uint32_t kInternetInvalidResponse = 12152;
inline constexpr std::uint32_t kInternetInvalidHeader = 12153;
inline constexpr std::uint32_t kInternetSecurityChannelError = 12157;

struct WebSession {
  std::string_view agent;
  std::uint32_t access_type = 0;  // 0 the settings of the system, 1 direct, 3 the proxy named here
  std::string_view proxy_name;
};

struct WebRequest {
  std::string_view verb;
  std::string_view object;   // the path with its query
  std::string_view version;  // "HTTP/1.0" or "HTTP/1.1"
  std::uint32_t flags = 0;
};

// Requests over HTTP, one at a time and waited for.
//
// A call that fails answers false or kNoInternet and leaves its reason in LastError. On Windows:
// InternetOpenW, InternetConnectW, HttpOpenRequestW, HttpAddRequestHeadersW, InternetSetOptionA,
// HttpSendRequestW, HttpQueryInfoA, InternetGetLastResponseInfoW, InternetCloseHandle of wininet.dll
// (https://learn.microsoft.com/windows/win32/wininet/); the numbers of flags, options and errors are theirs.
class WebRequests {
 public:
  virtual ~WebRequests() = default;

  virtual InternetHandle Open(const WebSession& session) = 0;

  // Nothing is sent before the request is. Fails for an empty host.
  virtual InternetHandle Connect(InternetHandle session, std::string_view host, std::uint16_t port) = 0;

  virtual InternetHandle OpenRequest(InternetHandle connection, const WebRequest& request) = 0;

  // `headers` are whole lines between CR LF. False for a line that is no header.
  virtual bool AddHeaders(InternetHandle request, std::string_view headers, std::uint32_t flags) = 0;

  virtual bool SetNumber(InternetHandle handle, InternetOption option, std::uint32_t value) = 0;
  virtual bool SetText(InternetHandle handle, InternetOption option, std::string_view value) = 0;

  // Has all sessions read the system's settings again.
  virtual bool Notify(InternetOption option) = 0;

  // Sends the request and `body`, which goes out byte for byte, and waits for the head of the answer. True
  // when one came, whatever its status.
  virtual bool Send(InternetHandle request, std::string_view body) = 0;

  // The status of the answer to a request that was sent. std::nullopt if no answer came.
  virtual std::optional<std::uint32_t> StatusCode(InternetHandle request) = 0;

  // The text of one header of the answer, by its number on the platform (5 is the length of the content).
  // std::nullopt if the answer lacks it.
  virtual std::optional<std::string> Header(InternetHandle request, std::uint32_t number) = 0;

  // What the server said beside an error, cut to `limit` characters. std::nullopt if it said nothing.
  virtual std::optional<std::string> LastResponse(std::uint32_t limit) = 0;

  // Closes what was opened on it too. Ignores kNoInternet and a handle that is closed already.
  virtual void Close(InternetHandle handle) = 0;

  // Why the last call that failed did so; 0 if none has.
  virtual std::uint32_t LastError() = 0;

  // Accepts certificates of one more authority, in PEM form (RFC 7468), beside those the system trusts.
  // False for a text without a certificate, and where only the system's own store decides.
  virtual bool TrustAuthority(std::string_view certificate) = 0;
};

}  // namespace ondura
