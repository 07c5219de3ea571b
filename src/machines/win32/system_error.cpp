#include "machines/win32/system_error.h"

namespace ondura {

SystemError Translated(DWORD error) {
  switch (error) {
    case ERROR_SUCCESS:
      return SystemError::kNone;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_SERVICE_DOES_NOT_EXIST:
      return SystemError::kMissing;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return SystemError::kExists;
    case ERROR_ACCESS_DENIED:
    case ERROR_PRIVILEGE_NOT_HELD:
      return SystemError::kDenied;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return SystemError::kInUse;
    case ERROR_MORE_DATA:
    case ERROR_INSUFFICIENT_BUFFER:
      return SystemError::kMoreData;
    case ERROR_NO_MORE_FILES:
      return SystemError::kNoMore;
    case ERROR_NOT_ALL_ASSIGNED:
      return SystemError::kNotAll;
    default:
      return SystemError::kOther;
  }
}

}  // namespace ondura
