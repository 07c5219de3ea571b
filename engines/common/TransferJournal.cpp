#include "engines/common/TransferJournal.h"

#include <utility>

#include "engine/engine_files.h"

namespace ondura::engines {

TransferJournal::TransferJournal(Client& client) : client_(client), progress_(client), report_(client) {
  progress_.Begin({});
}

void TransferJournal::InSync(std::string path) {
  ++figures_.in_sync;
  in_sync_paths_.push_back(std::move(path));
}

void TransferJournal::Sent(std::string_view path, std::uint64_t size_bytes) {
  report_.Sent(path, size_bytes);
  ++figures_.sent;
  figures_.sent_bytes += size_bytes;
}

void TransferJournal::Failed(std::string_view path, std::string_view reason) {
  report_.Failed(reason.empty() ? std::string{path} : std::string{path} + "  (" + std::string{reason} + ")");
  ++figures_.failed;
}

void TransferJournal::Void() {
  figures_.sent = 0;
  figures_.sent_bytes = 0;
}

EngineResult TransferJournal::ResultOfRun() const {
  if (figures_.failed > 0) return engine_results::kSomeFailed;
  if (figures_.sent > 0) return engine_results::kDone;
  if (figures_.considered > 0) return engine_results::kNothingNew;
  return met_exclusion_ ? engine_results::kAllExcluded : engine_results::kNothingNew;
}

void TransferJournal::Close(EngineResult result) {
  WriteNames(engine_files::kSent, changed_paths_);
  WriteNames(engine_files::kInSync, in_sync_paths_);
  report_.Close(result, figures_);
  progress_.End();
}

void TransferJournal::WriteNames(std::string_view name, const std::vector<std::string>& paths) {
  std::string text;
  for (const std::string& path : paths) text.append(path).append(kLineEnd);
  client_.text_files().Write(client_.installation().UserFile(name), text, Encoding::kUtf16);
}

}  // namespace ondura::engines
