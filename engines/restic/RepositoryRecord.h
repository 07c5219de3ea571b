#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engines/common/Client.h"

namespace ondura::engines {

// What the engine remembers of a user's repository, in Store.ini of its work folder: not with the local
// database, which anybody may throw away.
class RepositoryRecord {
 public:
  // `work_folder` is a folder of the machine without a backslash at its end.
  RepositoryRecord(Client& client, const std::string& work_folder);

  // The repository that the user's backups are in. Empty before the first contact.
  [[nodiscard]] std::string Id() const { return Read("Repository", "Id"); }
  bool RememberId(std::string_view id) { return Write("Repository", "Id", id); }

  // The last time that the repository at `address` was there and was the right one. Good for some minutes, as
  // long as a job's commands follow each other. The address without its login, as it is kept in the file.
  [[nodiscard]] bool WasMetLately(std::string_view address, LocalTime now) const;
  void NoteMeeting(std::string_view address, LocalTime now);
  // The newest snapshot, if it has been asked for since then.
  [[nodiscard]] std::string Newest() const { return Read("Contact", "Newest"); }
  void NoteNewest(std::string_view id) { Write("Contact", "Newest", id); }

  // What the repository holds, in bytes, as long as nothing has changed it: to count it means to read the
  // lists of all folders in it. Others may share it, so a figure is good for a week.
  [[nodiscard]] std::optional<std::uint64_t> Used(LocalTime now) const;
  void NoteUsed(std::uint64_t bytes, LocalTime now);
  void ForgetUsed() { Write("Usage", "Bytes", ""); }

  // A run that has not come to its end: what it sent is in the store, but not in its index.
  [[nodiscard]] bool IsRunOpen() const { return Read("Run", "Open") == "1"; }
  void SetRunOpen(bool is_open) { Write("Run", "Open", is_open ? "1" : "0"); }

  // The last transfer found no room.
  [[nodiscard]] bool IsFull() const { return Read("Run", "Full") == "1"; }
  void SetFull(bool is_full) { Write("Run", "Full", is_full ? "1" : "0"); }

  // The last care of the store: when, which part of it was read, and how it ended.
  [[nodiscard]] std::optional<LocalTime> LastCheck() const;
  [[nodiscard]] int LastPart() const;
  [[nodiscard]] std::string LastOutcome() const { return Read("Check", "Outcome"); }
  void NoteCheck(LocalTime time, int part, std::string_view outcome);

 private:
  [[nodiscard]] std::string Read(std::string_view section, std::string_view key) const;
  bool Write(std::string_view section, std::string_view key, std::string_view value);

  ProfileFiles& profiles_;
  std::string path_;
};

}  // namespace ondura::engines
