#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Client.h"

namespace ondura::rehearsal {

// The Exchange server of the rehearsal machine: `<data folder>ExchangeServer\<kind>\` with one folder for
// each storage group or mailbox and plain files in it.
class ExchangeServer {
 public:
  // `kind` is "StorageGroups" or "Mailboxes".
  ExchangeServer(engines::Client& client, std::string_view kind);

  // Of all that the server holds, in name order.
  std::vector<std::string> Names();

  bool Holds(std::string_view name);

  enum class Copied { kAll, kStopped, kFailed };

  // Copies the files of one into `folder`, which it makes. Asks before each file whether to stop.
  Copied CopyTo(std::string_view name, std::string_view folder, const std::function<bool()>& stop);

 private:
  std::vector<std::string> List(const std::string& folder, bool folders);

  engines::Client& client_;
  std::string folder_;
};

}  // namespace ondura::rehearsal
