#include <charconv>

#include "machines/posix/ports.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr std::string_view kText = "text:";
constexpr std::string_view kNumber = "dword:";
constexpr std::string_view kBinary = "binary:";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";

// What the ini form can't hold as it is: its own signs, line ends and blanks at the ends. A percent
// sign and two hexadecimal digits stand for such a byte.
bool NeedsEscape(char c) {
  return static_cast<unsigned char>(c) <= 0x20 ||
         std::string_view{"%=;[]\"'"}.find(c) != std::string_view::npos;
}

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const bool is_inner_blank = text[i] == ' ' && i > 0 && i + 1 < text.size();
    if (NeedsEscape(text[i]) && !is_inner_blank) {
      escaped.append("%").append(1, kHexDigits[byte >> 4U]).append(1, kHexDigits[byte & 0xFU]);
    } else {
      escaped += text[i];
    }
  }
  return escaped;
}

std::string Unescaped(std::string_view text) {
  std::string plain;
  while (!text.empty()) {
    unsigned int byte = 0;
    const bool has_digits = text.front() == '%' && text.size() > 2;
    if (has_digits && std::from_chars(text.data() + 1, text.data() + 3, byte, 16).ptr == text.data() + 3) {
      plain += static_cast<char>(byte);
      text.remove_prefix(3);
    } else {
      plain += text.front();
      text.remove_prefix(1);
    }
  }
  return plain;
}

std::string SectionOf(const RegistryName& name) {
  const std::string_view root =
      name.root == RegistryRoot::kLocalMachine ? "HKEY_LOCAL_MACHINE" : "HKEY_CURRENT_USER";
  std::string_view key = name.key;
  while (key.ends_with('\\')) key.remove_suffix(1);
  return std::string{root} + "\\" + Escaped(key);
}

// The unnamed value of a key is under "@".
std::string KeyOf(const RegistryName& name) { return name.value.empty() ? "@" : Escaped(name.value); }

std::optional<std::uint32_t> NumberOf(std::string_view digits) {
  std::uint32_t number = 0;
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return parsed.ec == std::errc{} ? std::optional{number} : std::nullopt;
}

// The values are kept in one ini file: a section for each key, the type in front of each value.
class PosixRegistry : public Registry {
 public:
  PosixRegistry(const std::string& root, IniStore& store, const CodePageTable& code_page)
      : root_(root), file_(root + "/registry.ini"), store_(store), code_page_(code_page) {}

  std::optional<RegistryValue> Read(const RegistryName& name, RegistryAccess /*access*/) override {
    const auto file = store_.Load(file_, root_);
    if (!file) return std::nullopt;
    const auto stored = file->Find(code_page_.Encode(SectionOf(name)), code_page_.Encode(KeyOf(name)));
    return stored ? Parse(*stored) : std::nullopt;
  }

  bool Write(const RegistryName& name, const RegistryValue& value) override {
    if (value.type == RegistryType::kOther) return false;
    const FolderLock lock{file_};
    const auto old = store_.Load(file_, root_);
    if (!old && LastError() != HostError::kMissing) return false;
    IniText text{old ? old->bytes() : std::string{}, code_page_, IniUse::kOneKey};
    const bool changed = text.Set(code_page_.Encode(SectionOf(name)), code_page_.Encode(KeyOf(name)),
                                  code_page_.Encode(Format(value)));
    return !changed || store_.Save(file_, root_, text, lock);
  }

 private:
  static std::string Format(const RegistryValue& value) {
    if (value.type == RegistryType::kText) return std::string{kText} + Escaped(value.text);
    const bool is_binary = value.type == RegistryType::kBinary;
    return std::string{is_binary ? kBinary : kNumber} +
           std::to_string(is_binary ? value.number & 0xFFU : value.number);
  }

  [[nodiscard]] std::optional<RegistryValue> Parse(std::string_view stored) const {
    if (stored.starts_with(kText)) {
      const std::string bytes = Unescaped(stored.substr(kText.size()));
      return RegistryValue{RegistryType::kText, code_page_.Decode(bytes), 0};
    }
    const bool is_binary = stored.starts_with(kBinary);
    if (!is_binary && !stored.starts_with(kNumber)) return RegistryValue{};
    const auto number = NumberOf(stored.substr(is_binary ? kBinary.size() : kNumber.size()));
    if (!number) return RegistryValue{};
    return RegistryValue{is_binary ? RegistryType::kBinary : RegistryType::kDword, {}, *number};
  }

  std::string root_;
  std::string file_;
  IniStore& store_;
  const CodePageTable& code_page_;
};

}  // namespace

std::unique_ptr<Registry> MakePosixRegistry(const std::string& root, IniStore& store,
                                            const CodePageTable& code_page) {
  return std::make_unique<PosixRegistry>(root, store, code_page);
}

}  // namespace ondura
