#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Transfer.h"
#include "reporting/ErrorTextSlot.h"
#include "reporting/Options.h"

namespace ondura {

// Whether the web layer uses TLS, as Cont_login settles it for the whole component.
struct WebSecurity {
  std::uint32_t SecureRequestFlag = 0;  // kRequestSecure or 0
  std::string ServerHttpPort;           // "443" or "80"
};

// One request at a time with Basic authorization, and the sentences for what can go wrong with it.
//
// Whoever wants requests fills hConnect, RequestBody, AuthorizationValue and RequestFlags before a call, and
// closes hConnect. Texts are UTF-8; the body goes out in the system code page.
class WebDavControl : public ErrorTextSlot {
 public:
  WebDavControl(const Machine& machine, const Transfer& transfer, Options& trace, const WebSecurity& security)
      : machine_(machine), transfer_(transfer), trace_(trace), security_(security) {}

  // The data sent with the request.
  std::string RequestBody;
  // Further headers, whole lines between CR LF. Each call puts the authorization in front and leaves it
  // there.
  std::string RequestHeaders;
  std::uint32_t RequestFlags = 0;
  // The credentials in Base64.
  std::string AuthorizationValue;
  InternetHandle hInternet = kNoInternet;
  InternetHandle hConnect = kNoInternet;
  InternetHandle hRequest = kNoInternet;
  std::string ProxyUser;
  std::string ProxyPass;

  // Opens a session in the place of the last one and keeps the proxy's credentials for the requests. A user
  // who dials out automatically has that set in the connection's own entry. False, with an error text, when
  // there is no session.
  bool hInternetOpen(std::string_view sUserAgent, std::uint32_t dAccessType, std::string_view sProxyName,
                     std::string_view sProxyUser, std::string_view sProxyPass);

  // Prepares a request with `webdavaction` as its verb and sends it, closing the last one. The status of the
  // answer, or the number of the error that ended it. With IsBackup the request is prepared only, for the
  // caller to send, and the result is 1.
  std::int32_t HttpProcessCalls(std::string_view webdavaction, std::string_view resource, bool IsBackup);

  // The description of a pending run-time error: none is ever pending here, so empty.
  std::string ErrorOut(std::int32_t dwError, std::string_view szFunc);

  // Keeps the connection alive: up to three requests, as long as they are answered with 200.
  void DummyCall();

  // Puts the sentence for a file error, or for a status and its verb, into ErrorText. Statuses that the verb
  // expects leave it.
  void dav_oper_stat_codes(std::int32_t code, std::string_view dav_verb, std::int32_t File_error);

  [[nodiscard]] InternetHandle getInternetOpenHandle() const { return hInternet; }

  // "#" and "%" as "%" and their code.
  [[nodiscard]] static std::string ReverseConvertString(std::string_view sText);

  // A header of the last answer as a number; 0 where it is missing or none.
  std::int32_t ReadNumericHeader(std::uint32_t number);

 private:
  void SetAutoConnect();
  bool PrepareRequest(std::string_view action, std::string_view resource);
  void CloseRequest();
  std::int32_t LastError();

  Machine machine_;
  const Transfer& transfer_;
  Options& trace_;
  const WebSecurity& security_;
};

}  // namespace ondura
