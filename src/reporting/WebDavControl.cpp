#include "reporting/WebDavControl.h"

#include <algorithm>
#include <array>

#include "reporting/web_texts.h"
#include "text/separators.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

constexpr std::int32_t kPrepared = 1;
constexpr std::int32_t kStatusOk = 200;
constexpr std::uint32_t kTimeoutMs = 45000;
constexpr int kMostDummyCalls = 3;

}  // namespace

bool WebDavControl::hInternetOpen(std::string_view sUserAgent, std::uint32_t dAccessType,
                                  std::string_view sProxyName, std::string_view sProxyUser,
                                  std::string_view sProxyPass) {
  machine_.web.Close(hInternet);
  ProxyUser = sProxyUser;
  ProxyPass = sProxyPass;
  if (transfer_.Trf_ReadUserProfile(profile_keys::kAutoConnect) == "1") SetAutoConnect();
  hInternet = machine_.web.Open({.agent = sUserAgent, .access_type = dAccessType, .proxy_name = sProxyName});
  if (hInternet == kNoInternet) dav_oper_stat_codes(LastError(), "OPEN", 0);
  return hInternet != kNoInternet;
}

void WebDavControl::SetAutoConnect() {
  const std::string key = "RemoteAccess\\Profile\\" + transfer_.Trf_ReadUserProfile(profile_keys::kIspName);
  machine_.registry.Write({.root = RegistryRoot::kLocalMachine, .key = key, .value = "AutoConnect"},
                          {.type = RegistryType::kDword, .text = {}, .number = 1});
  machine_.web.Notify(InternetOption::kSettingsChanged);
  machine_.web.Notify(InternetOption::kRefresh);
}

std::int32_t WebDavControl::HttpProcessCalls(std::string_view webdavaction, std::string_view resource,
                                             bool IsBackup) {
  trace_.WriteTrace(std::string{"Entered HTTPCall with action: "}
                        .append(webdavaction)
                        .append(" & resource: ")
                        .append(resource));
  if (hRequest != kNoInternet) CloseRequest();
  RequestFlags |= security_.SecureRequestFlag;
  if (!PrepareRequest(webdavaction, resource)) return LastError();
  if (IsBackup) return kPrepared;
  if (!machine_.web.Send(hRequest, machine_.code_page.FromUtf8(RequestBody))) return LastError();
  const auto status = static_cast<std::int32_t>(machine_.web.StatusCode(hRequest).value_or(0));
  trace_.WriteTrace("Exit from HttpProcessCalls with status code : " + std::to_string(status));
  return status;
}

bool WebDavControl::PrepareRequest(std::string_view action, std::string_view resource) {
  WebRequests& web = machine_.web;
  const std::string object = ReverseConvertString(resource);
  hRequest = web.OpenRequest(
      hConnect, {.verb = action, .object = object, .version = "HTTP/1.1", .flags = RequestFlags});
  if (hRequest == kNoInternet) return false;
  RequestHeaders =
      Trim(("Authorization: Basic " + AuthorizationValue).append(kLineEnd).append(RequestHeaders));
  if (!web.AddHeaders(hRequest, RequestHeaders, kAddOrReplaceHeader)) return false;
  for (const InternetOption option :
       {InternetOption::kConnectTimeout, InternetOption::kReceiveTimeout, InternetOption::kSendTimeout}) {
    web.SetNumber(hRequest, option, kTimeoutMs);
  }
  if (!ProxyUser.empty()) {
    web.SetText(hRequest, InternetOption::kProxyUserName, ProxyUser);
    web.SetText(hRequest, InternetOption::kProxyPassword, ProxyPass);
  }
  return true;
}

void WebDavControl::DummyCall() {
  for (int call = 0; call < kMostDummyCalls; ++call) {
    if (HttpProcessCalls("T", "Dummy", false) != kStatusOk) break;
  }
  CloseRequest();
}

void WebDavControl::CloseRequest() {
  machine_.web.Close(hRequest);
  hRequest = kNoInternet;
}

std::int32_t WebDavControl::LastError() { return static_cast<std::int32_t>(machine_.web.LastError()); }

std::int32_t WebDavControl::ReadNumericHeader(std::uint32_t number) {
  const std::string text = TrimAtTerminator(machine_.web.Header(hRequest, number).value_or(""));
  return static_cast<std::int32_t>(ParseInteger(text).value_or(0));
}

std::string WebDavControl::ReverseConvertString(std::string_view sText) {
  // The second would otherwise meet what the first has put there.
  return ReplaceAll(ReplaceAll(sText, "%", "%25"), "#", "%23");
}

std::string WebDavControl::ErrorOut(std::int32_t dwError, std::string_view szFunc) {
  const std::string call = std::to_string(dwError).append(szFunc);
  trace_.WriteTrace("Enter ErrorOut " + call);
  trace_.WriteTrace("Exit ErrorOut " + call);
  return {};
}

void WebDavControl::dav_oper_stat_codes(std::int32_t code, std::string_view dav_verb,
                                        std::int32_t File_error) {
  if (const auto text = FileErrorText(File_error); !text.empty()) return dav_seterrorstring(text);
  if (const auto text = ErrorOut(code, dav_verb); !text.empty()) return dav_seterrorstring(text);
  trace_.WriteTrace("Enter dav_oper_stat_codes " + std::to_string(code).append(dav_verb));
  if (const auto text = WebStatusText(code, dav_verb)) dav_seterrorstring(*text);
  trace_.WriteTrace("Exit dav_oper_stat_codes ");
}

}  // namespace ondura
