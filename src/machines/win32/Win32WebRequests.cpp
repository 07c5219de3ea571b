#include "machines/win32/windows_api.h"

#include <wininet.h>

#include <array>
#include <vector>

#include "machines/win32/ports.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

static_assert(kRequestReload == INTERNET_FLAG_RELOAD);
static_assert(kRequestSecure == INTERNET_FLAG_SECURE);
static_assert(kAddOrReplaceHeader == (HTTP_ADDREQ_FLAG_ADD | HTTP_ADDREQ_FLAG_REPLACE));

static_assert(DWORD{INTERNET_OPTION_CONNECT_TIMEOUT} == static_cast<DWORD>(InternetOption::kConnectTimeout));
static_assert(DWORD{INTERNET_OPTION_SEND_TIMEOUT} == static_cast<DWORD>(InternetOption::kSendTimeout));
static_assert(DWORD{INTERNET_OPTION_RECEIVE_TIMEOUT} == static_cast<DWORD>(InternetOption::kReceiveTimeout));
static_assert(DWORD{INTERNET_OPTION_REFRESH} == static_cast<DWORD>(InternetOption::kRefresh));
static_assert(DWORD{INTERNET_OPTION_SETTINGS_CHANGED} ==
              static_cast<DWORD>(InternetOption::kSettingsChanged));
static_assert(DWORD{INTERNET_OPTION_PROXY_USERNAME} == static_cast<DWORD>(InternetOption::kProxyUserName));
static_assert(DWORD{INTERNET_OPTION_PROXY_PASSWORD} == static_cast<DWORD>(InternetOption::kProxyPassword));

static_assert(kInternetInvalidParameter == ERROR_INVALID_PARAMETER);
static_assert(kInternetTimeout == ERROR_INTERNET_TIMEOUT);
static_assert(kInternetExtendedError == ERROR_INTERNET_EXTENDED_ERROR);
static_assert(kInternetInternalError == ERROR_INTERNET_INTERNAL_ERROR);
static_assert(kInternetInvalidUrl == ERROR_INTERNET_INVALID_URL);
static_assert(kInternetNameNotResolved == ERROR_INTERNET_NAME_NOT_RESOLVED);
static_assert(kInternetInvalidOption == ERROR_INTERNET_INVALID_OPTION);
static_assert(kInternetInvalidHandle == ERROR_INTERNET_INCORRECT_HANDLE_TYPE);
static_assert(kInternetInvalidHandleState == ERROR_INTERNET_INCORRECT_HANDLE_STATE);
static_assert(kInternetCannotConnect == ERROR_INTERNET_CANNOT_CONNECT);
static_assert(kInternetConnectionAborted == ERROR_INTERNET_CONNECTION_ABORTED);
static_assert(kInternetConnectionReset == ERROR_INTERNET_CONNECTION_RESET);
static_assert(kInternetCertificateDateInvalid == ERROR_INTERNET_SEC_CERT_DATE_INVALID);
static_assert(kInternetCertificateNameInvalid == ERROR_INTERNET_SEC_CERT_CN_INVALID);
static_assert(kInternetInvalidAuthority == ERROR_INTERNET_INVALID_CA);
static_assert(kInternetHeaderNotFound == ERROR_HTTP_HEADER_NOT_FOUND);
static_assert(kInternetInvalidResponse == ERROR_HTTP_INVALID_SERVER_RESPONSE);
static_assert(kInternetInvalidHeader == ERROR_HTTP_INVALID_HEADER);
static_assert(kInternetSecurityChannelError == ERROR_INTERNET_SECURITY_CHANNEL_ERROR);

constexpr DWORD kHeaderCharacters = 1024;

// NOLINTNEXTLINE(performance-no-int-to-ptr): the platform's handles are numbers that it types as pointers.
HINTERNET Native(InternetHandle handle) { return reinterpret_cast<HINTERNET>(handle); }

class Win32WebRequests : public WebRequests {
 public:
  InternetHandle Open(const WebSession& session) override {
    const std::wstring agent = ToWide(session.agent);
    const std::wstring proxy = ToWide(session.proxy_name);
    return Opened(InternetOpenW(agent.c_str(), session.access_type, proxy.empty() ? nullptr : proxy.c_str(),
                                nullptr, 0));
  }

  InternetHandle Connect(InternetHandle session, std::string_view host, std::uint16_t port) override {
    return Opened(InternetConnectW(Native(session), ToWide(host).c_str(), port, nullptr, nullptr,
                                   INTERNET_SERVICE_HTTP, 0, 0));
  }

  InternetHandle OpenRequest(InternetHandle connection, const WebRequest& request) override {
    return Opened(HttpOpenRequestW(Native(connection), ToWide(request.verb).c_str(),
                                   ToWide(request.object).c_str(), ToWide(request.version).c_str(), nullptr,
                                   nullptr, request.flags, 0));
  }

  bool AddHeaders(InternetHandle request, std::string_view headers, std::uint32_t flags) override {
    const std::wstring lines = ToWide(headers);
    return Done(
        HttpAddRequestHeadersW(Native(request), lines.c_str(), static_cast<DWORD>(lines.size()), flags));
  }

  bool SetNumber(InternetHandle handle, InternetOption option, std::uint32_t value) override {
    DWORD number = value;
    return Done(InternetSetOptionA(Native(handle), static_cast<DWORD>(option), &number, sizeof number));
  }

  bool SetText(InternetHandle handle, InternetOption option, std::string_view value) override {
    std::string text = ToSystem(value);
    return Done(InternetSetOptionA(Native(handle), static_cast<DWORD>(option), text.data(),
                                   static_cast<DWORD>(text.size())));
  }

  bool Notify(InternetOption option) override {
    return Done(InternetSetOptionA(nullptr, static_cast<DWORD>(option), nullptr, 0));
  }

  bool Send(InternetHandle request, std::string_view body) override {
    return Done(HttpSendRequestW(Native(request), nullptr, 0,
                                 body.empty() ? nullptr : const_cast<char*>(body.data()),
                                 static_cast<DWORD>(body.size())));
  }

  std::optional<std::uint32_t> StatusCode(InternetHandle request) override {
    DWORD status = 0;
    DWORD bytes = sizeof status;
    const bool found = Done(HttpQueryInfoA(Native(request), HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER,
                                           &status, &bytes, nullptr));
    return found ? std::optional<std::uint32_t>{status} : std::nullopt;
  }

  std::optional<std::string> Header(InternetHandle request, std::uint32_t number) override {
    std::array<char, kHeaderCharacters> text{};
    DWORD bytes = kHeaderCharacters;
    if (!Done(HttpQueryInfoA(Native(request), number, text.data(), &bytes, nullptr))) return std::nullopt;
    return FromSystem({text.data(), bytes});
  }

  std::optional<std::string> LastResponse(std::uint32_t limit) override {
    std::vector<wchar_t> text(limit + std::size_t{1});
    DWORD error = 0;
    DWORD characters = limit;
    if (!Done(InternetGetLastResponseInfoW(&error, text.data(), &characters))) return std::nullopt;
    return FromWide(text.data());
  }

  void Close(InternetHandle handle) override { InternetCloseHandle(Native(handle)); }

  std::uint32_t LastError() override { return last_error_; }

  // Windows goes by its own stores.
  bool TrustAuthority(std::string_view /*certificate*/) override { return false; }

 private:
  InternetHandle Opened(HINTERNET handle) {
    if (handle == nullptr) last_error_ = GetLastError();
    return reinterpret_cast<InternetHandle>(handle);
  }

  bool Done(BOOL result) {
    if (result == FALSE) last_error_ = GetLastError();
    return result != FALSE;
  }

  std::uint32_t last_error_ = 0;
};

}  // namespace

std::unique_ptr<WebRequests> MakeWin32WebRequests() { return std::make_unique<Win32WebRequests>(); }

}  // namespace ondura
