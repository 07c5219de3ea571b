#pragma once

#include <utility>

#include "machines/win32/windows_api.h"

namespace ondura {

// Owns one handle of the platform and closes it. Can be moved, not copied.
template <typename Kind>
class Unique {
 public:
  using Value = typename Kind::Value;

  Unique() = default;
  explicit Unique(Value value) : value_(value) {}
  ~Unique() { Reset(); }
  Unique(Unique&& other) noexcept : value_(std::exchange(other.value_, Value{})) {}
  Unique& operator=(Unique&& other) noexcept {
    if (this != &other) {
      Reset();
      value_ = std::exchange(other.value_, Value{});
    }
    return *this;
  }

  [[nodiscard]] Value get() const { return value_; }
  [[nodiscard]] bool valid() const { return Kind::IsValid(value_); }

  // Where a call puts the handle that it opens.
  [[nodiscard]] Value* Receive() {
    Reset();
    return &value_;
  }

 private:
  void Reset() {
    if (valid()) Kind::Close(value_);
    value_ = Value{};
  }

  Value value_{};
};

// Files, processes, mutexes, tokens, snapshots. Some calls answer failure with null, some with -1.
struct KernelHandle {
  using Value = HANDLE;
  static bool IsValid(Value handle) { return handle != nullptr && handle != INVALID_HANDLE_VALUE; }
  static void Close(Value handle) { CloseHandle(handle); }
};

struct FileSearchHandle {
  using Value = HANDLE;
  static bool IsValid(Value handle) { return handle != nullptr && handle != INVALID_HANDLE_VALUE; }
  static void Close(Value handle) { FindClose(handle); }
};

struct RegistryKeyHandle {
  using Value = HKEY;
  static bool IsValid(Value key) { return key != nullptr; }
  static void Close(Value key) { RegCloseKey(key); }
};

struct LibraryHandle {
  using Value = HMODULE;
  static bool IsValid(Value library) { return library != nullptr; }
  static void Close(Value library) { FreeLibrary(library); }
};

using UniqueHandle = Unique<KernelHandle>;
using UniqueFileSearch = Unique<FileSearchHandle>;
using UniqueRegistryKey = Unique<RegistryKeyHandle>;
using UniqueLibrary = Unique<LibraryHandle>;

}  // namespace ondura
