#include "engines/restic/StoreSettings.h"

#include <algorithm>

#include "text/text.h"

namespace ondura::engines {

namespace {

class SettingsFile {
 public:
  explicit SettingsFile(Client& client)
      : profiles_(client.machine().profiles),
        path_(client.installation().ExeLocation + std::string{kEngineSettingsFile}),
        own_section_(engine_settings::OfUser(client.installation().CurrentUser)) {}

  std::string Text(std::string_view section, std::string_view key) {
    std::string own = profiles_.ReadString({path_, own_section_, key});
    return own.empty() ? profiles_.ReadString({path_, section, key}) : own;
  }

  std::int64_t Number(std::string_view section, std::string_view key, std::int64_t fallback) {
    const auto number = ParseInteger(Trim(Text(section, key)));
    return number && *number >= 0 ? *number : fallback;
  }

  int Count(std::string_view section, std::string_view key, int fallback) {
    constexpr std::int64_t kMost = 1'000'000'000;
    return static_cast<int>(std::min(Number(section, key, fallback), kMost));
  }

 private:
  ProfileFiles& profiles_;
  std::string path_;
  std::string own_section_;
};

std::string Filled(std::string_view text, Client& client, const Account& account) {
  std::string port = client.transfer().Trf_ReadUserProfile(profile_keys::kPort);
  if (port.empty()) port = client.installation().DefaultPort;
  std::string filled = ReplaceAll(text, "{server}", account.server);
  filled = ReplaceAll(filled, "{port}", port);
  return ReplaceAll(filled, "{account}", account.name);
}

// A name that would lead out of the folder of all accounts.
bool IsNoFolderName(std::string_view name) {
  return name.empty() || name == "." || name == ".." ||
         name.find_first_of("\\/:*?\"<>|") != std::string_view::npos;
}

void SetRepository(Client& client, const Account& account, const std::string& template_text,
                   StoreSettings& settings) {
  const std::string fallback = client.installation().DataFile("Store\\{account}");
  const std::string& text = template_text.empty() ? fallback : template_text;
  if (text.find("{account}") != std::string::npos && IsNoFolderName(account.name)) {
    settings.error = "the account name '" + account.name + "' can't be part of a location";
    return;
  }
  settings.repository = Filled(text, client, account);
  if (IsMachinePath(settings.repository)) {
    settings.store_folder = WithBackslash(settings.repository);
    settings.repository = client.machine().processes.SystemPath(settings.repository);
    if (settings.repository.empty())
      settings.error = "there is no drive for the store " + settings.store_folder;
  } else if (StoreKind(settings.repository).empty() && !settings.repository.starts_with('/')) {
    settings.error = "the store '" + settings.repository + "' is not a full path";
  }
}

}  // namespace

bool IsMachinePath(std::string_view text) {
  return text.starts_with("\\\\") || (text.size() > 2 && text[1] == ':' && text[2] == '\\');
}

std::string_view StoreKind(std::string_view repository) {
  const auto colon = repository.find(':');
  if (colon == std::string_view::npos || colon < 2) return {};
  const std::string_view kind = repository.substr(0, colon);
  return kind.find_first_of("/\\") == std::string_view::npos ? kind : std::string_view{};
}

StoreSettings ReadStoreSettings(Client& client, const Account& account) {
  using namespace engine_settings;
  SettingsFile file(client);
  StoreSettings settings;
  settings.authority = file.Text(kStore, kAuthority);
  settings.ssh_config = file.Text(kStore, kSshConfig);
  settings.max_bytes = static_cast<std::uint64_t>(file.Number(kStore, kMaxBytes, 0));
  settings.upload_kib = file.Count(kLimits, kUploadKib, 0);
  settings.download_kib = file.Count(kLimits, kDownloadKib, 0);
  settings.retention = {file.Count(kRetention, kLast, 0), file.Count(kRetention, kDaily, 0),
                        file.Count(kRetention, kWeekly, 0), file.Count(kRetention, kMonthly, 0),
                        file.Count(kRetention, kYearly, 0)};
  settings.check_days = file.Count(kCheck, kDays, settings.check_days);
  settings.check_parts = std::max(1, file.Count(kCheck, kParts, settings.check_parts));
  SetRepository(client, account, std::string{Trim(file.Text(kStore, kRepository))}, settings);
  return settings;
}

}  // namespace ondura::engines
