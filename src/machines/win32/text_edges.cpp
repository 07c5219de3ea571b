#include "machines/win32/text_edges.h"

#include <cstring>

#include "machines/win32/windows_api.h"
#include "text/utf16.h"

namespace ondura {

namespace {

std::wstring WidenedFromSystem(std::string_view bytes) {
  const int size = static_cast<int>(bytes.size());
  const int length = MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_ACP, 0, bytes.data(), size, wide.data(), length);
  return wide;
}

// Characters that the page lacks become "?".
std::string NarrowedToSystem(std::wstring_view wide) {
  const auto narrow = [&](char* into, int size) {
    return WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()), into,
                               size, "?", nullptr);
  };
  std::string bytes(static_cast<std::size_t>(narrow(nullptr, 0)), '\0');
  narrow(bytes.data(), static_cast<int>(bytes.size()));
  return bytes;
}

}  // namespace

// The platform's own conversion has no form for a lone surrogate.
std::wstring ToWide(std::string_view utf8) {
  const std::string units = ToUtf16(utf8);
  std::wstring wide(units.size() / sizeof(wchar_t), L'\0');
  std::memcpy(wide.data(), units.data(), units.size());
  return wide;
}

std::string FromWide(std::wstring_view wide) {
  return FromUtf16Units({reinterpret_cast<const char*>(wide.data()), wide.size() * sizeof(wchar_t)});
}

std::string ToSystem(std::string_view utf8) {
  // A system whose code page is UTF-8 refuses both the flag and a stand-in.
  if (GetACP() == CP_UTF8) return std::string{utf8};
  return NarrowedToSystem(ToWide(utf8));
}

std::string FromSystem(std::string_view bytes) { return FromWide(WidenedFromSystem(bytes)); }

}  // namespace ondura
