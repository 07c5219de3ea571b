#pragma once

// What the tests of the registered component share: calls as an early-bound caller makes them.

#include "machines/win32/windows_api.h"

#include <ole2.h>
#include <oleauto.h>
#include <wrl/client.h>

#include <string>
#include <utility>

#include "OnduraEService_com.h"

namespace ondura_client {

using Microsoft::WRL::ComPtr;

// The thread's apartment.
class Apartment {
 public:
  Apartment() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~Apartment() { CoUninitialize(); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

// An object of a public class; null when it can't be made.
template <class Interface>
ComPtr<Interface> Create(REFCLSID class_id) {
  ComPtr<Interface> object;
  CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface), &object);
  return object;
}

// A text for one call, and one that a call fills.
class Text {
 public:
  Text() = default;
  explicit Text(const std::wstring& text) : text_(SysAllocString(text.c_str())) {}
  ~Text() { SysFreeString(text_); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;

  operator BSTR() const { return text_; }
  BSTR* operator&() { return &text_; }
  [[nodiscard]] std::wstring str() const { return {text_ == nullptr ? L"" : text_, SysStringLen(text_)}; }

 private:
  BSTR text_ = nullptr;
};

// A VARIANT cleared with this object.
struct Value : VARIANT {
  Value() { VariantInit(this); }
  ~Value() { VariantClear(this); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
};

}  // namespace ondura_client
