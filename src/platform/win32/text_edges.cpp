#include "platform/win32/text_edges.h"

#include "platform/win32/windows_api.h"

namespace ondura {

namespace {

std::wstring Widened(UINT page, std::string_view bytes) {
  const int size = static_cast<int>(bytes.size());
  const int length = MultiByteToWideChar(page, 0, bytes.data(), size, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(page, 0, bytes.data(), size, wide.data(), length);
  return wide;
}

std::string Narrowed(UINT page, DWORD flags, const char* missing, std::wstring_view wide) {
  const int length = static_cast<int>(wide.size());
  const int size = WideCharToMultiByte(page, flags, wide.data(), length, nullptr, 0, missing, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(page, flags, wide.data(), length, bytes.data(), size, missing, nullptr);
  return bytes;
}

}  // namespace

std::wstring ToWide(std::string_view utf8) { return Widened(CP_UTF8, utf8); }

std::string FromWide(std::wstring_view wide) { return Narrowed(CP_UTF8, 0, nullptr, wide); }

std::string ToSystem(std::string_view utf8) {
  // A system whose code page is UTF-8 refuses both the flag and a stand-in.
  if (GetACP() == CP_UTF8) return std::string{utf8};
  return Narrowed(CP_ACP, WC_NO_BEST_FIT_CHARS, "?", ToWide(utf8));
}

std::string FromSystem(std::string_view bytes) { return FromWide(Widened(CP_ACP, bytes)); }

}  // namespace ondura
