#include "machines/win32/start_texts.h"

#include <algorithm>

#include "machines/win32/paths.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

namespace ondura {

namespace {

constexpr DWORD kLongestPath = 32768;

std::wstring OwnVariable(const wchar_t* name) {
  std::wstring value(GetEnvironmentVariableW(name, nullptr, 0), L'\0');
  value.resize(value.empty() ? 0
                             : GetEnvironmentVariableW(name, value.data(), static_cast<DWORD>(value.size())));
  return value;
}

std::wstring OwnFolder() {
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), kLongestPath));
  return path.substr(0, path.rfind(L'\\'));
}

// The first sign may be the equals sign of the system's own variables, such as "=C:".
std::wstring_view NameOf(std::wstring_view variable) { return variable.substr(0, variable.find(L'=', 1)); }

int Compare(std::wstring_view one, std::wstring_view other) {
  return CompareStringOrdinal(one.data(), static_cast<int>(one.size()), other.data(),
                              static_cast<int>(other.size()), TRUE);
}

}  // namespace

// Backslashes mean themselves except before a quotation mark, where each is doubled.
std::wstring QuotedArgument(const std::wstring& argument) {
  if (!argument.empty() && argument.find_first_of(L" \t\n\v\"") == std::wstring::npos) return argument;
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t letter : argument) {
    if (letter == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = letter == L'\\' ? backslashes + 1 : 0;
    quoted += letter;
  }
  return quoted.append(backslashes, L'\\') + L'"';
}

std::wstring EnvironmentBlock(const std::vector<std::string>& variables) {
  constexpr std::wstring_view kSystemRoot = L"SystemRoot";
  std::vector<std::wstring> sorted;
  for (const std::string& variable : variables) sorted.push_back(ToWide(variable));
  if (std::ranges::none_of(sorted, [](const std::wstring& variable) {
        return Compare(NameOf(variable), kSystemRoot) == CSTR_EQUAL;
      })) {
    sorted.push_back(std::wstring{kSystemRoot} + L"=" + OwnVariable(kSystemRoot.data()));
  }
  std::ranges::stable_sort(sorted, [](const std::wstring& one, const std::wstring& other) {
    return Compare(NameOf(one), NameOf(other)) == CSTR_LESS_THAN;
  });
  std::wstring block;
  for (const std::wstring& variable : sorted) block.append(variable).push_back(L'\0');
  return block;
}

std::wstring FindProgram(const std::string& file) {
  if (file.find_first_of("\\/:") != std::string::npos) return WidePath(file);
  const std::wstring folders = OwnFolder() + L";" + OwnVariable(L"PATH");
  std::wstring path(kLongestPath, L'\0');
  const DWORD length =
      SearchPathW(folders.c_str(), ToWide(file).c_str(), L".exe", kLongestPath, path.data(), nullptr);
  path.resize(length < kLongestPath ? length : 0);
  return path;
}

}  // namespace ondura
