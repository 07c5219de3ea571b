#include "com/WebDavObject.h"

namespace ondura {

namespace {

// Handles of the platform have 32 significant bits, as a number of a script has
// (https://learn.microsoft.com/windows/win32/winprog64/interprocess-communication).
long NumberOf(InternetHandle handle) { return static_cast<long>(handle); }
InternetHandle HandleOf(long number) { return static_cast<InternetHandle>(static_cast<ULONG>(number)); }

}  // namespace

STDMETHODIMP WebDavObject::hInternetOpen(BSTR sUserAgent, long dAccessType, BSTR sProxyName, BSTR sProxyUser,
                                         BSTR sProxyPass, VARIANT_BOOL* succeeded) {
  return Answer(succeeded, [&] {
    return web().hInternetOpen(TextOf(sUserAgent), static_cast<std::uint32_t>(dAccessType),
                               TextOf(sProxyName), TextOf(sProxyUser), TextOf(sProxyPass));
  });
}

STDMETHODIMP WebDavObject::HttpProcessCalls(BSTR webdavaction, BSTR resource, VARIANT_BOOL IsBackup,
                                            long* status) {
  return Answer(status, [&] {
    return static_cast<long>(
        web().HttpProcessCalls(TextOf(webdavaction), TextOf(resource), IsBackup != VARIANT_FALSE));
  });
}

STDMETHODIMP WebDavObject::ErrorOut(long dwError, BSTR szFunc, BSTR* text) {
  return Answer(text, [&] { return web().ErrorOut(dwError, TextOf(szFunc)); });
}

STDMETHODIMP WebDavObject::DummyCall() {
  return Run([&] { web().DummyCall(); });
}

STDMETHODIMP WebDavObject::dav_oper_stat_codes(long code, BSTR dav_verb, long File_error) {
  return Run([&] { web().dav_oper_stat_codes(code, TextOf(dav_verb), File_error); });
}

STDMETHODIMP WebDavObject::dav_seterrorstring(BSTR strDescrip) {
  return Run([&] { web().dav_seterrorstring(TextOf(strDescrip)); });
}

STDMETHODIMP WebDavObject::getInternetOpenHandle(long* handle) {
  return Answer(handle, [&] { return NumberOf(web().getInternetOpenHandle()); });
}

STDMETHODIMP WebDavObject::ReverseConvertString(BSTR sText, BSTR* text) {
  return Answer(text, [&] { return ondura::WebDavControl::ReverseConvertString(TextOf(sText)); });
}

STDMETHODIMP WebDavObject::get_RequestBody(BSTR* value) {
  return Answer(value, [&] { return web().RequestBody; });
}

STDMETHODIMP WebDavObject::put_RequestBody(BSTR value) {
  return Run([&] { web().RequestBody = TextOf(value); });
}

STDMETHODIMP WebDavObject::get_RequestHeaders(BSTR* value) {
  return Answer(value, [&] { return web().RequestHeaders; });
}

STDMETHODIMP WebDavObject::put_RequestHeaders(BSTR value) {
  return Run([&] { web().RequestHeaders = TextOf(value); });
}

STDMETHODIMP WebDavObject::get_RequestFlags(long* value) {
  return Answer(value, [&] { return static_cast<long>(web().RequestFlags); });
}

STDMETHODIMP WebDavObject::put_RequestFlags(long value) {
  return Run([&] { web().RequestFlags = static_cast<std::uint32_t>(value); });
}

STDMETHODIMP WebDavObject::get_AuthorizationValue(BSTR* value) {
  return Answer(value, [&] { return web().AuthorizationValue; });
}

STDMETHODIMP WebDavObject::put_AuthorizationValue(BSTR value) {
  return Run([&] { web().AuthorizationValue = TextOf(value); });
}

STDMETHODIMP WebDavObject::get_hInternet(long* value) {
  return Answer(value, [&] { return NumberOf(web().hInternet); });
}

STDMETHODIMP WebDavObject::put_hInternet(long value) {
  return Run([&] { web().hInternet = HandleOf(value); });
}

STDMETHODIMP WebDavObject::get_hConnect(long* value) {
  return Answer(value, [&] { return NumberOf(web().hConnect); });
}

STDMETHODIMP WebDavObject::put_hConnect(long value) {
  return Run([&] { web().hConnect = HandleOf(value); });
}

STDMETHODIMP WebDavObject::get_hRequest(long* value) {
  return Answer(value, [&] { return NumberOf(web().hRequest); });
}

STDMETHODIMP WebDavObject::put_hRequest(long value) {
  return Run([&] { web().hRequest = HandleOf(value); });
}

STDMETHODIMP WebDavObject::get_ErrorText(BSTR* value) {
  return Answer(value, [&] { return web().ErrorText(); });
}

STDMETHODIMP WebDavObject::get_ProxyUser(BSTR* value) {
  return Answer(value, [&] { return web().ProxyUser; });
}

STDMETHODIMP WebDavObject::put_ProxyUser(BSTR value) {
  return Run([&] { web().ProxyUser = TextOf(value); });
}

STDMETHODIMP WebDavObject::get_ProxyPass(BSTR* value) {
  return Answer(value, [&] { return web().ProxyPass; });
}

STDMETHODIMP WebDavObject::put_ProxyPass(BSTR value) {
  return Run([&] { web().ProxyPass = TextOf(value); });
}

}  // namespace ondura
