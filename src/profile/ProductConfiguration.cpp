#include "profile/ProductConfiguration.h"

#include "profile/Deployment.h"
#include "profile/profile_paths.h"
#include "text/separators.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr std::string_view kProductSection = "ProductInfo";
constexpr std::string_view kConnectionSection = "ConnectionInfo";
constexpr std::string_view kDefaultPort = "11905";

// The product line whose executables don't follow the executable group.
constexpr std::int16_t kFixedNamesProduct = 1;

std::string CutAfterTrim(std::string_view value) { return TrimAtTerminator(Trim(value)); }

}  // namespace

bool ProductConfiguration::LoadProductConfiguration() {
  if (!machine_.files.Exists(FilePath())) return false;
  ReadProduct();
  SetDefaultAddresses();
  const bool is_configured = !installation_.ProductInstallationName.empty() &&
                             installation_.ProductNumber != 0 && !installation_.ProductName.empty();
  if (is_configured) SetProductNames();
  return is_configured;
}

void ProductConfiguration::ReadProduct() {
  installation_.ProductNumber =
      ParseInt16(ReadConfigurationValue(kProductSection, "ProductNumber")).value_or(std::int16_t{0});
  installation_.ProductName = ReadConfigurationValue(kProductSection, "ProductName");
  installation_.ProductInstallationName = ReadConfigurationValue(kProductSection, "ProductInstallationName");
  installation_.ExeGroup = ReadConfigurationValue(kProductSection, "ExeGroup");
  installation_.ProductCaption = ReadConfigurationValue(kProductSection, "ProductCaption");
  installation_.DomainName = ReadConfigurationValue(kConnectionSection, "DomainName");
  installation_.Language = ReadConfigurationValue(kProductSection, "Language");
}

void ProductConfiguration::SetDefaultAddresses() {
  const Deployment deployment = ReadDeployment(machine_, installation_);
  installation_.DefaultServerAddress = deployment.PrimaryServer;
  installation_.AlternateServerAddress = deployment.SecondaryServer;
  installation_.DefaultPort = kDefaultPort;
}

void ProductConfiguration::SetProductNames() {
  Installation& names = installation_;
  names.RegistryRoot = "Software\\" + names.ProductInstallationName;
  names.ProfileIniName = "\\" + names.ProductInstallationName + ".ini";
  if (names.ProductNumber == kFixedNamesProduct) {
    names.BackgroundExe = "OxProfBackground.exe";
    names.TrayExe = "OxPMonitor.exe";
    names.ClientExe = "TolmeraProfClient.exe";
    names.BackupSetSizeExe = "OxProfBckupsetSize.exe";
    names.VssVista32Exe = "Tolmera_VSSVista32.exe";
    names.VssVista64Exe = "Tolmera_VSSVista64.exe";
    return;
  }
  names.BackgroundExe = names.ExeGroup + "Background.exe";
  names.TrayExe = names.ExeGroup + "Tray.exe";
  names.ClientExe = names.ExeGroup + "ClsClient.exe";
  names.BackupSetSizeExe = names.ExeGroup + "BckupsetSize.exe";
  names.VssVista32Exe = names.ExeGroup + "VSS_Vista32.exe";
  names.VssVista64Exe = names.ExeGroup + "VSS_Vista64.exe";
}

std::string ProductConfiguration::ReadConfigurationValue(std::string_view sSection,
                                                         std::string_view sKey) const {
  const std::string key = StoredForm(sKey);
  const std::string value = CutAfterTrim(machine_.profiles.ReadLongString({FilePath(), sSection, key}));
  return CutAfterTrim(ciphers_.PairDecode(value));
}

std::string ProductConfiguration::StoredForm(std::string_view text) const {
  return ciphers_.PairEncode(ciphers_.ShiftEncode(text));
}

std::string ProductConfiguration::FilePath() const { return installation_.DataFile(kConfigurationFile); }

}  // namespace ondura
