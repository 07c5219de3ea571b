#pragma once

#include <string>
#include <string_view>

#include "engine/engine_results.h"
#include "engines/common/Client.h"
#include "engines/common/NameList.h"
#include "engines/common/ProgressFile.h"
#include "engines/common/SessionReport.h"

namespace ondura::engines {

// What one transfer reports while it runs and at its end: the progress file, the session log, the lists
// of files sent and files in sync, and the figures that its result follows from.
class TransferJournal {
 public:
  explicit TransferJournal(Client& client);

  // How much there is to do, as far as is known by now.
  void Expect(const TransferFigures& total) { progress_.Begin(total); }

  // The file that is on its way now, and what has been done before it.
  void Show(std::string_view path, const TransferFigures& done) { progress_.Show(path, done); }
  void ShowRun(std::string_view path, const TransferFigures& done, const TransferFigures& total) {
    progress_.ShowRun(path, done, total);
  }
  void Finish(const TransferFigures& done) { progress_.Finish(done); }

  // A file has been looked at.
  void Consider() { ++figures_.considered; }
  void InSync(std::string_view path);

  // A file has changed and is to be sent, however that ends.
  void Changed(std::string_view path) { changed_.Add(path); }
  void Sent(std::string_view path, std::uint64_t size_bytes);

  // `reason` is added to the line of the log where it is not empty.
  void Failed(std::string_view path, std::string_view reason = {});
  void Say(std::string_view message) { report_.Say(message); }

  // An exclusion of the user has kept something out.
  void MeetExclusion() { met_exclusion_ = true; }

  // Nothing that was sent can be restored: the closing line is not to count it.
  void Void();

  [[nodiscard]] const RunFigures& figures() const { return figures_; }

  // The result of a run that came to its end.
  [[nodiscard]] EngineResult ResultOfRun() const;

  // Writes the lists and the end of log and progress.
  void Close(EngineResult result);

 private:
  ProgressFile progress_;
  SessionReport report_;
  RunFigures figures_;
  NameList changed_;
  NameList in_sync_;
  bool met_exclusion_ = false;
};

}  // namespace ondura::engines
