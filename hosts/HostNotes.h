#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"

namespace ondura {

// What the hosts keep in HostState.ini of the data folder: for their next start, and for people who ask how
// things stand. A note that can't be written is lost.
class HostNotes {
 public:
  // Both outlive the notes.
  HostNotes(const Machine& machine, const Installation& installation)
      : machine_(machine), installation_(installation) {}

  // When a host last made a pass, to about ten minutes; std::nullopt if none has.
  [[nodiscard]] std::optional<LocalTime> LastTick() const;
  void NoteTick(LocalTime now);

  // Why the host makes no passes; empty while it does.
  [[nodiscard]] std::string Waits() const;
  void NoteWait(std::string_view reason);

  // What the host did to the engine of the user's last job; empty where it left it alone.
  [[nodiscard]] std::string EngineEnded(std::string_view user) const;
  void NoteEngineEnded(std::string_view user, std::string_view what);

 private:
  [[nodiscard]] std::string Read(std::string_view section, std::string_view key) const;
  void Write(std::string_view section, std::string_view key, std::string_view value);

  const Machine& machine_;
  const Installation& installation_;
};

}  // namespace ondura
