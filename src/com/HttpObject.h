#pragma once

#include "com/DispatchObject.h"

namespace ondura {

// The class HttpFunctions of the type library.
class HttpObject : public DispatchObject<IHttpFunctions> {
 public:
  STDMETHODIMP SendEmail(BSTR emailid, BSTR subject, BSTR content, BSTR sToEmail,
                         VARIANT_BOOL* is_sent) override;
  STDMETHODIMP HttpErrorText(long nError, BSTR* text) override;
  STDMETHODIMP StripNull(BSTR sText, BSTR* text) override;
  STDMETHODIMP AddParam(BSTR sName, BSTR sValue, VARIANT_BOOL bRaw) override;
  STDMETHODIMP EncodeFormValue(BSTR sValue, BSTR* text) override;
  STDMETHODIMP PostForm(BSTR sHost, BSTR sPath, BSTR sBody, short nMode, VARIANT_BOOL bNoResult,
                        VARIANT_BOOL* is_sent) override;

 private:
  [[nodiscard]] ondura::HttpFunctions& http() const { return component().http(); }
};

}  // namespace ondura
