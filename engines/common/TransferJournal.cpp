#include "engines/common/TransferJournal.h"

#include "engine/engine_files.h"

namespace ondura::engines {

TransferJournal::TransferJournal(Client& client)
    : progress_(client),
      report_(client),
      changed_(client, engine_files::kSent),
      in_sync_(client, engine_files::kInSync) {
  progress_.Begin({});
}

void TransferJournal::InSync(std::string_view path) {
  ++figures_.in_sync;
  in_sync_.Add(path);
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
  changed_.Close();
  in_sync_.Close();
  report_.Close(result, figures_);
  progress_.End();
}

}  // namespace ondura::engines
