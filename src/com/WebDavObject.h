#pragma once

#include "com/DispatchObject.h"

namespace ondura {

// The class WebDavControl of the type library: the one that the whole component shares.
class WebDavObject : public DispatchObject<IWebDavControl> {
 public:
  STDMETHODIMP hInternetOpen(BSTR sUserAgent, long dAccessType, BSTR sProxyName, BSTR sProxyUser,
                             BSTR sProxyPass, VARIANT_BOOL* succeeded) override;
  STDMETHODIMP HttpProcessCalls(BSTR webdavaction, BSTR resource, VARIANT_BOOL IsBackup,
                                long* status) override;
  STDMETHODIMP ErrorOut(long dwError, BSTR szFunc, BSTR* text) override;
  STDMETHODIMP DummyCall() override;
  STDMETHODIMP dav_oper_stat_codes(long code, BSTR dav_verb, long File_error) override;
  STDMETHODIMP dav_seterrorstring(BSTR strDescrip) override;
  STDMETHODIMP getInternetOpenHandle(long* handle) override;
  STDMETHODIMP ReverseConvertString(BSTR sText, BSTR* text) override;
  STDMETHODIMP get_RequestBody(BSTR* value) override;
  STDMETHODIMP put_RequestBody(BSTR value) override;
  STDMETHODIMP get_RequestHeaders(BSTR* value) override;
  STDMETHODIMP put_RequestHeaders(BSTR value) override;
  STDMETHODIMP get_RequestFlags(long* value) override;
  STDMETHODIMP put_RequestFlags(long value) override;
  STDMETHODIMP get_AuthorizationValue(BSTR* value) override;
  STDMETHODIMP put_AuthorizationValue(BSTR value) override;
  STDMETHODIMP get_hInternet(long* value) override;
  STDMETHODIMP put_hInternet(long value) override;
  STDMETHODIMP get_hConnect(long* value) override;
  STDMETHODIMP put_hConnect(long value) override;
  STDMETHODIMP get_hRequest(long* value) override;
  STDMETHODIMP put_hRequest(long value) override;
  STDMETHODIMP get_ErrorText(BSTR* value) override;
  STDMETHODIMP get_ProxyUser(BSTR* value) override;
  STDMETHODIMP put_ProxyUser(BSTR value) override;
  STDMETHODIMP get_ProxyPass(BSTR* value) override;
  STDMETHODIMP put_ProxyPass(BSTR value) override;

 private:
  [[nodiscard]] ondura::WebDavControl& web() const { return component().web(); }
};

}  // namespace ondura
