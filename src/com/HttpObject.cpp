#include "com/HttpObject.h"

namespace ondura {

STDMETHODIMP HttpObject::SendEmail(BSTR emailid, BSTR subject, BSTR content, BSTR sToEmail,
                                   VARIANT_BOOL* is_sent) {
  return Answer(is_sent, [&] {
    return http().SendEmail(TextOf(emailid), TextOf(subject), TextOf(content), TextOf(sToEmail));
  });
}

STDMETHODIMP HttpObject::HttpErrorText(long nError, BSTR* text) {
  return Answer(text, [&] { return http().HttpErrorText(static_cast<std::uint32_t>(nError)); });
}

STDMETHODIMP HttpObject::StripNull(BSTR sText, BSTR* text) {
  return Answer(text, [&] { return ondura::HttpFunctions::StripNull(TextOf(sText)); });
}

STDMETHODIMP HttpObject::AddParam(BSTR sName, BSTR sValue, VARIANT_BOOL bRaw) {
  return Run([&] { http().AddParam(TextOf(sName), TextOf(sValue), bRaw != VARIANT_FALSE); });
}

STDMETHODIMP HttpObject::EncodeFormValue(BSTR sValue, BSTR* text) {
  return Answer(text, [&] { return http().EncodeFormValue(TextOf(sValue)); });
}

STDMETHODIMP HttpObject::PostForm(BSTR sHost, BSTR sPath, BSTR sBody, short nMode, VARIANT_BOOL bNoResult,
                                  VARIANT_BOOL* is_sent) {
  return Answer(is_sent, [&] {
    return http().PostForm(TextOf(sHost), TextOf(sPath), TextOf(sBody), nMode, bNoResult != VARIANT_FALSE);
  });
}

}  // namespace ondura
