#include "rehearsal/common/ExchangeServer.h"

#include <algorithm>
#include <chrono>

#include "text/text.h"

namespace ondura::rehearsal {

ExchangeServer::ExchangeServer(engines::Client& client, std::string_view kind)
    : client_(client),
      folder_(client.installation().DataFile("ExchangeServer\\") + std::string{kind} + "\\") {}

std::vector<std::string> ExchangeServer::Names() { return List(folder_, true); }

bool ExchangeServer::Holds(std::string_view name) {
  return client_.machine().folders.Exists(folder_ + std::string{name});
}

ExchangeServer::Copied ExchangeServer::CopyTo(std::string_view name, std::string_view folder,
                                              const std::function<bool()>& stop) {
  const Machine& machine = client_.machine();
  const std::chrono::milliseconds pause{client_.DeploymentNumber("MillisecondsPerFile", 0)};
  const std::string from = folder_ + std::string{name} + "\\";
  machine.folders.Make(folder);
  for (const std::string& file : List(from, false)) {
    if (stop()) return Copied::kStopped;
    if (!machine.files.Copy(from + file, WithBackslash(folder) + file)) return Copied::kFailed;
    machine.clock.Sleep(pause);
  }
  return stop() ? Copied::kStopped : Copied::kAll;
}

std::vector<std::string> ExchangeServer::List(const std::string& folder, bool folders) {
  std::vector<std::string> names;
  client_.machine().folders.List(folder, [&](const FolderEntry& entry) {
    if (entry.is_folder == folders) names.emplace_back(entry.name);
    return Visit::kContinue;
  });
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace ondura::rehearsal
