#include "com/com_error.h"

#include <wrl/client.h>

#include <exception>
#include <new>

#include "com/com_text.h"

namespace ondura {

namespace {

HRESULT Report(std::string_view text) {
  Microsoft::WRL::ComPtr<ICreateErrorInfo> error;
  Microsoft::WRL::ComPtr<IErrorInfo> info;
  if (SUCCEEDED(CreateErrorInfo(error.GetAddressOf()))) {
    error->SetSource(Bstr("OnduraEService").get());
    error->SetDescription(Bstr(text).get());
    if (SUCCEEDED(error.As(&info))) SetErrorInfo(0, info.Get());
  }
  return E_FAIL;
}

HRESULT Translate() {
  try {
    throw;
  } catch (const ComError& error) {
    SetErrorInfo(0, nullptr);
    return error.code;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const std::exception& error) {
    return Report(error.what());
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace

HRESULT ConversionResult(HRESULT code) {
  const bool is_mismatch = code == DISP_E_OVERFLOW || code == DISP_E_BADVARTYPE;
  return is_mismatch ? DISP_E_TYPEMISMATCH : code;
}

HRESULT ResultOfInvoke(HRESULT code, EXCEPINFO* exception) {
  if (code != DISP_E_EXCEPTION || exception == nullptr || exception->scode != DISP_E_TYPEMISMATCH) {
    return ConversionResult(code);
  }
  SysFreeString(exception->bstrSource);
  SysFreeString(exception->bstrDescription);
  SysFreeString(exception->bstrHelpFile);
  *exception = {};
  return DISP_E_TYPEMISMATCH;
}

HRESULT CodeOfException() noexcept {
  try {
    return Translate();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace ondura
