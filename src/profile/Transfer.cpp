#include "profile/Transfer.h"

#include <limits>

#include "profile/profile_paths.h"
#include "text/separators.h"
#include "text/text.h"
#include "util/cBase64.h"

namespace ondura {

namespace {

using namespace profile_keys;

constexpr int kNoServerValue = -1;
constexpr int kNoOutputValue = -10;

}  // namespace

std::string Transfer::Trf_ReadProxyProfile(std::string_view param) const {
  return ReadShifted(kProxySection, param);
}

std::string Transfer::Trf_ReadUserProfile(std::string_view param) const {
  return ReadShifted(kMainSection, param);
}

void Transfer::Trf_WriteUserProfile(std::string_view param, std::string_view paramval) const {
  Trf_WriteUserProfileDefault(kMainSection, ciphers_.ShiftEncode(param), ciphers_.ShiftEncode(paramval));
}

std::string Transfer::Trf_ReadUserProfileNew(std::string_view param) const {
  const std::string value = machine_.profiles.ReadString({UserProfile(), kMainSection, param});
  return TrimAtTerminator(Trim(cBase64{machine_.code_page}.Decode(value)));
}

void Transfer::Trf_WriteUserProfileDefault(std::string_view sSection, std::string_view param,
                                           std::string_view paramval) const {
  machine_.profiles.WriteString({UserProfile(), sSection, param}, paramval);
}

std::string Transfer::Trf_ReadUserNameProfile(std::string_view param) const {
  return ReadShared(kMainSection, param);
}

std::string Transfer::Trf_ReadUserNameProfileReg(std::string_view param) const {
  return ReadShared(kRegistrySection, param);
}

std::string Transfer::Trf_ReadUserNameDBProfile(std::string_view param) const {
  return ReadShared(kScanSection, param);
}

void Transfer::Trf_WriteUserNameProfile(std::string_view param, std::string_view paramval) const {
  WriteShared(kMainSection, param, paramval);
}

void Transfer::Trf_WriteUserNameRegistryProfile(std::string_view param, std::string_view paramval) const {
  WriteShared(kRegistrySection, param, paramval);
}

void Transfer::Trf_WriteUserNameDBProfile(std::string_view param, std::string_view paramval) const {
  WriteShared(kScanSection, param, paramval);
}

std::string Transfer::Trf_ReadPluginUserProfile(std::string_view param) const {
  return machine_.profiles.ReadString({PluginFilePath(installation_), kMainSection, param});
}

std::string Transfer::Trf_ReadExchangeProfile(std::string_view sSection, std::string_view sKey,
                                              std::string_view sFile) const {
  return machine_.profiles.ReadString({sFile, sSection, sKey});
}

std::int16_t Transfer::Trf_ReadServerValues(std::string_view param) const {
  return ReadNumber(kServerSection, param, kNoServerValue);
}

std::int16_t Transfer::Trf_ReadOutputValue(std::string_view sSection, std::string_view param) const {
  return ReadNumber(sSection, param, kNoOutputValue);
}

std::string Transfer::UserProfile() const {
  return UserProfilePath(installation_, installation_.CurrentUser);
}

std::string Transfer::ReadShifted(std::string_view section, std::string_view param) const {
  const std::string key = ciphers_.ShiftEncode(param);
  return ciphers_.ShiftDecode(machine_.profiles.ReadString({UserProfile(), section, key}));
}

std::string Transfer::ReadShared(std::string_view section, std::string_view param) const {
  return machine_.profiles.ReadString({SharedStatePath(installation_), section, param});
}

void Transfer::WriteShared(std::string_view section, std::string_view param,
                           std::string_view paramval) const {
  machine_.profiles.WriteString({SharedStatePath(installation_), section, param}, paramval);
}

std::int16_t Transfer::ReadNumber(std::string_view section, std::string_view param, int fallback) const {
  using Limits = std::numeric_limits<std::int16_t>;
  const int number = machine_.profiles.ReadInt({UserProfile(), section, param}, fallback);
  const bool fits = number >= Limits::min() && number <= Limits::max();
  return fits ? static_cast<std::int16_t>(number) : std::int16_t{0};
}

}  // namespace ondura
