#include <array>

#include "machines/win32/ports.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

namespace ondura {

namespace {

constexpr LCID kUserDefault = 1024;
constexpr int kLocaleBufferBytes = 256;
constexpr DWORD kComputerNameBytes = 16;

class Win32SystemInfo : public SystemInfo {
 public:
  SystemVersion Version() override {
    OSVERSIONINFOEXA known{};
    known.dwOSVersionInfoSize = sizeof known;
    if (!GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&known))) return {};
    return {static_cast<int>(known.dwPlatformId), static_cast<int>(known.dwMajorVersion),
            static_cast<int>(known.dwMinorVersion), known.wProductType == VER_NT_WORKSTATION};
  }

  bool IsWow64() override {
    BOOL is_wow64 = FALSE;
    return IsWow64Process(GetCurrentProcess(), &is_wow64) && is_wow64;
  }

  bool Is64Bit() override {
    constexpr std::size_t kPointerBytes = 8;
    return sizeof(void*) == kPointerBytes || IsWow64();
  }

  std::string ComputerName() override {
    std::array<char, kComputerNameBytes> name{};
    DWORD length = kComputerNameBytes;
    if (!GetComputerNameA(name.data(), &length)) return {};
    return FromSystem({name.data(), length});
  }
};

class Win32LocaleInfo : public LocaleInfo {
 public:
  std::string Text(int kind) override {
    std::array<char, kLocaleBufferBytes> buffer{};
    const int length =
        GetLocaleInfoA(kUserDefault, static_cast<LCTYPE>(kind), buffer.data(), kLocaleBufferBytes);
    if (length <= 0) return {};
    return FromSystem({buffer.data(), static_cast<std::size_t>(length) - 1});
  }
};

class Win32CodePage : public CodePage {
 public:
  std::string FromUtf8(std::string_view text) override { return ToSystem(text); }
  std::string ToUtf8(std::string_view bytes) override { return FromSystem(bytes); }
};

}  // namespace

std::unique_ptr<SystemInfo> MakeWin32SystemInfo() { return std::make_unique<Win32SystemInfo>(); }

std::unique_ptr<LocaleInfo> MakeWin32LocaleInfo() { return std::make_unique<Win32LocaleInfo>(); }

std::unique_ptr<CodePage> MakeWin32CodePage() { return std::make_unique<Win32CodePage>(); }

}  // namespace ondura
