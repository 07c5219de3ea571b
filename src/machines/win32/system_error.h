#pragma once

#include "machines/win32/windows_api.h"

namespace ondura {

// The platform's error numbers, as far as the backend distinguishes them.
enum class SystemError { kNone, kMissing, kExists, kDenied, kInUse, kMoreData, kNoMore, kNotAll, kOther };

SystemError Translated(DWORD error);

// Of the call that failed last.
inline SystemError LastSystemError() { return Translated(GetLastError()); }

}  // namespace ondura
