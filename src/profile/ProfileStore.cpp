#include "profile/ProfileStore.h"

#include <cstddef>

#include "profile/profile_paths.h"
#include "text/separators.h"
#include "text/text.h"
#include "util/cBase64.h"

namespace ondura {

namespace {

std::string TrimmedAndCut(std::string_view value) { return TrimAtTerminator(Trim(value)); }

std::string CutAndTrimmed(std::string_view value) { return std::string{Trim(TrimAtTerminator(value))}; }

}  // namespace

std::string ProfileStore::ReadProfileValue(std::string_view sSection, std::string_view param) const {
  return ReadUserProfileValue(installation_.CurrentUser, sSection, param);
}

std::string ProfileStore::ReadUserProfileValue(std::string_view sUser, std::string_view sSection,
                                               std::string_view param) const {
  return machine_.profiles.ReadString({UserProfilePath(installation_, sUser), sSection, param});
}

double ProfileStore::ReadLastRetValue() const {
  return ParseNumber(ReadProfileValue(profile_keys::kRetValue)).value_or(0);
}

std::string ProfileStore::ReadDefaultUser(std::string_view param) const {
  const std::string value = ReadRegistrySection(SharedStatePath(installation_), param);
  return value.empty() ? value : TrimAtTerminator(ciphers_.ShiftDecode(value));
}

std::string ProfileStore::ReadSharedRegistryValue(std::string_view param) const {
  return ReadRegistrySection(SharedStatePath(installation_), param);
}

std::string ProfileStore::ReadInstallRegistryValue(std::string_view param) const {
  return ReadRegistrySection(InstallPointerPath(installation_), param);
}

std::string ProfileStore::ReadProfilefromRegistry(std::string_view param) const {
  return TrimAtTerminator(cBase64{machine_.code_page}.Decode(CutAndTrimmed(ReadMachineKey(param))));
}

std::string ProfileStore::ReadProfilefromRegistryWithoutDeCrypt(std::string_view param) const {
  return CutAndTrimmed(ReadMachineKey(param));
}

std::string ProfileStore::ReadRandomNumFromRegistry(std::string_view param) const {
  return TrimAtTerminator(ReadMachineKey(param));
}

std::string ProfileStore::ReadRegistrySection(std::string_view file, std::string_view param) const {
  return TrimmedAndCut(machine_.profiles.ReadString({file, profile_keys::kRegistrySection, param}));
}

std::string ProfileStore::ReadMachineKey(std::string_view param) const {
  // Values are fetched through a buffer of this size, which also holds their terminator; the query of a
  // longer one fails.
  constexpr std::size_t kBufferBytes = 1024;
  const std::string key = "Software\\" + installation_.ProductInstallationName;
  const auto value =
      machine_.registry.Read({RegistryRoot::kLocalMachine, key, param}, RegistryAccess::kQueryValue);
  if (!value || value->type != RegistryType::kText) return {};
  const bool fits = machine_.code_page.FromUtf8(value->text).size() < kBufferBytes;
  return fits ? value->text : std::string{};
}

}  // namespace ondura
