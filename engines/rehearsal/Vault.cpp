#include "engines/rehearsal/Vault.h"

#include <array>
#include <functional>
#include <vector>

#include "text/text.h"

namespace ondura::engines {

namespace {

constexpr std::string_view kNetworkFolder = "UNC\\";

std::string HexText(const Md5Digest& digest) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : digest) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 15];
  }
  return text;
}

// The machine's path of a file in the vault.
std::string OriginalOf(std::string_view place) {
  if (place.starts_with(kNetworkFolder)) return "\\\\" + std::string{place.substr(kNetworkFolder.size())};
  const auto drive_end = place.find('\\');
  return std::string{place.substr(0, drive_end)} + ":" + std::string{place.substr(drive_end)};
}

using FileVisitor = std::function<void(std::string_view path, const FileState& state)>;

// Shows every file under `root`, which ends in a backslash, but those directly in it.
void ForEachFileBelow(Folders& folders, const std::string& root, const FileVisitor& visit) {
  std::vector<std::string> queue{root};
  for (std::size_t at = 0; at < queue.size(); ++at) {
    const std::string folder = queue[at];
    folders.List(folder, [&](const FolderEntry& entry) {
      const std::string path = folder + std::string{entry.name};
      if (entry.is_folder) {
        queue.push_back(path + "\\");
      } else if (folder != root) {
        visit(path, {entry.size_bytes, entry.modified});
      }
      return Visit::kContinue;
    });
  }
}

}  // namespace

Vault::Vault(const Machine& machine, std::string_view folder)
    : machine_(machine), folder_(WithBackslash(folder)), account_file_(folder_ + "account.ini") {}

EngineResult Vault::Enter(const Account& account) {
  if (!EqualsIgnoringCase(account.server, "localhost")) return engine_results::kCannotConnect;
  if (account.name.empty() || account.password.empty()) return engine_results::kWrongPassword;
  if (!MakeFolders(folder_)) return engine_results::kCannotConnect;
  if (!IsRemembered("Password", account, account.password)) return engine_results::kWrongPassword;
  if (!IsRemembered("EncryptionPassword", account, account.encryption_password)) {
    return engine_results::kWrongEncryptionPassword;
  }
  return engine_results::kDone;
}

bool Vault::IsRemembered(std::string_view key, const Account& account, std::string_view secret) {
  const auto digest = machine_.crypto.Md5(ToLower(account.name) + "\n" + std::string{secret});
  if (!digest) return false;
  const std::string text = HexText(*digest);
  const std::string stored = machine_.profiles.ReadString({account_file_, "Account", key});
  if (stored.empty()) return machine_.profiles.WriteString({account_file_, "Account", key}, text);
  return stored == text;
}

std::optional<int> Vault::RehearsedResult(EngineCommand command) {
  const auto text = machine_.profiles.ReadString({account_file_, "Rehearsal", NumberOf(command)});
  const auto result = ParseInt16(text);
  if (!result) return std::nullopt;
  return *result;
}

std::string Vault::RehearsedAddress() {
  return machine_.profiles.ReadString({account_file_, "Rehearsal", "MultipleIP"});
}

std::string Vault::PathOf(std::string_view path) const {
  if (path.starts_with("\\\\")) return folder_ + std::string{kNetworkFolder} + std::string{path.substr(2)};
  std::string place = folder_;
  for (const char character : path) {
    if (character != ':') place += character;
  }
  return place;
}

bool Vault::Store(std::string_view path) {
  const std::string place = PathOf(path);
  if (!MakeFolders(place.substr(0, place.rfind('\\') + 1))) return false;
  return machine_.files.Copy(path, place);
}

FileStates Vault::States() {
  FileStates states;
  ForEachFileBelow(machine_.folders, folder_, [&](std::string_view path, const FileState& state) {
    states.Put(OriginalOf(path.substr(folder_.size())), state);
  });
  return states;
}

std::uint64_t Vault::UsedBytes() {
  std::uint64_t used = 0;
  ForEachFileBelow(machine_.folders, folder_,
                   [&](std::string_view, const FileState& state) { used += state.size_bytes; });
  return used;
}

std::uint64_t Vault::MaxBytes(std::uint64_t fallback) {
  const auto max = ParseInteger(machine_.profiles.ReadString({account_file_, "Account", "Max"}));
  return max && *max > 0 ? static_cast<std::uint64_t>(*max) : fallback;
}

bool Vault::MakeFolders(std::string_view folder) {
  const std::string text{folder};
  if (made_folders_.contains(text)) return true;
  if (!machine_.folders.Exists(folder)) {
    const auto parent_end = folder.substr(0, folder.size() - 1).rfind('\\');
    if (parent_end == std::string_view::npos || !MakeFolders(folder.substr(0, parent_end + 1))) return false;
    if (!machine_.folders.Make(folder.substr(0, folder.size() - 1))) return false;
  }
  made_folders_.insert(text);
  return true;
}

std::string VaultFolder(const Installation& installation) {
  return installation.DataFile("Vault\\") + installation.CurrentUser + "\\";
}

}  // namespace ondura::engines
