#include "com/Base64Object.h"

namespace ondura {

namespace {

// An exponent without a power is an overflow to the caller.
double Checked(std::optional<std::uint32_t> power) {
  if (!power) throw ComError{DISP_E_OVERFLOW};
  return *power;
}

}  // namespace

STDMETHODIMP Base64Object::DecodedMessage(BSTR* text) {
  return Answer(text, [&] { return core_.DecodedMessage(); });
}

STDMETHODIMP Base64Object::EncodedMessage(BSTR* text) {
  return Answer(text, [&] { return core_.EncodedMessage(); });
}

STDMETHODIMP Base64Object::encode(BSTR sText, BSTR* text) {
  return Answer(text, [&] { return core_.encode(TextOf(sText)); });
}

STDMETHODIMP Base64Object::Decode(BSTR sText, BSTR* text) {
  return Answer(text, [&] { return core_.Decode(TextOf(sText)); });
}

STDMETHODIMP Base64Object::RShiftByte(unsigned char bValue, long nBits, unsigned char* value) {
  return Answer(value, [&] { return cBase64::RShiftByte(bValue, nBits); });
}

STDMETHODIMP Base64Object::Power2(long nExponent, double* value) {
  return Answer(value, [&] { return Checked(cBase64::Power2(nExponent)); });
}

}  // namespace ondura
