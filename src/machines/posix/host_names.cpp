#include "machines/posix/host_names.h"

#include "text/text.h"
#include "text/utf16.h"

namespace ondura {

namespace {

constexpr char32_t kPrivateBase = 0xF000;
constexpr std::string_view kReserved = "\\:*?\"<>|";

bool IsReserved(unsigned char byte) {
  return (byte > 0 && byte < 0x20) || kReserved.find(static_cast<char>(byte)) != std::string_view::npos;
}

// A character of the private block may not stand for itself, or the way back would be ambiguous.
bool IsPrivate(char32_t character) { return character >= kPrivateBase && character <= kPrivateBase + 0xFF; }

bool IsPlain(std::string_view name) {
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x80 || IsReserved(byte)) return false;
  }
  return true;
}

}  // namespace

std::string_view WindowsName(std::string_view host_name, std::string& scratch) {
  if (IsPlain(host_name)) return host_name;
  scratch.clear();
  while (!host_name.empty()) {
    const auto byte = static_cast<unsigned char>(host_name.front());
    const DecodedCharacter next = DecodeUtf8(host_name);
    if (!next.valid || IsPrivate(next.character) || IsReserved(byte)) {
      AppendUtf8(scratch, kPrivateBase + byte);
      host_name.remove_prefix(1);
    } else {
      scratch.append(host_name.substr(0, next.bytes));
      host_name.remove_prefix(next.bytes);
    }
  }
  return scratch;
}

void AppendHostName(std::string& host_path, std::string_view windows_name) {
  while (!windows_name.empty()) {
    const DecodedCharacter next = DecodeUtf8(windows_name);
    const auto byte = static_cast<unsigned char>(next.character & 0xFFU);
    if (next.valid && IsPrivate(next.character) && (byte >= 0x80 || IsReserved(byte))) {
      host_path += static_cast<char>(byte);
    } else {
      host_path.append(windows_name.substr(0, next.bytes));
    }
    windows_name.remove_prefix(next.bytes);
  }
}

std::string FoldedName(std::string_view windows_name) { return ToLower(windows_name); }

}  // namespace ondura
