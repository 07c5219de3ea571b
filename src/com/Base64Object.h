#pragma once

#include "com/DispatchObject.h"
#include "util/cBase64.h"

namespace ondura {

// The class cBase64 of the type library; each object keeps its own last results.
class Base64Object : public DispatchObject<IcBase64> {
 public:
  STDMETHODIMP DecodedMessage(BSTR* text) override;
  STDMETHODIMP EncodedMessage(BSTR* text) override;
  STDMETHODIMP encode(BSTR sText, BSTR* text) override;
  STDMETHODIMP Decode(BSTR sText, BSTR* text) override;
  STDMETHODIMP RShiftByte(unsigned char bValue, long nBits, unsigned char* value) override;
  STDMETHODIMP Power2(long nExponent, double* value) override;

 private:
  cBase64 core_{component().context().machine().code_page};
};

}  // namespace ondura
