#pragma once

#include "com/automation.h"

namespace ondura {

// A failure of the edge itself, on its way to the caller as this code.
struct ComError {
  HRESULT code;
};

// Throws a failed code.
inline void Check(HRESULT code) {
  if (FAILED(code)) throw ComError{code};
}

inline void RequirePointer(const void* pointer) {
  if (pointer == nullptr) throw ComError{E_POINTER};
}

// A conversion that can't be made is one thing to the caller, whatever Automation calls it.
HRESULT ConversionResult(HRESULT code);

// What IDispatch answers: a failed conversion is the same code whether Automation or the method's own work
// met it, and `exception` then holds nothing.
HRESULT ResultOfInvoke(HRESULT code, EXCEPINFO* exception);

// The code of the exception being handled; one of the core leaves its text as the thread's error.
HRESULT CodeOfException() noexcept;

}  // namespace ondura
