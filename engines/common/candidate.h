#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "engines/rehearsal/FileStates.h"
#include "platform/local_time.h"

namespace ondura::engines {

// A file that may have to be sent. Its copy counts as the same when it has the size and one of the times:
// a file system may show a file's time an hour off after the clock change.
struct Candidate {
  std::string path;
  std::uint64_t size_bytes = 0;
  LocalTime modified;
  LocalTime hour_later;
  LocalTime hour_earlier;

  [[nodiscard]] bool Matches(const FileState& state) const {
    return state.size_bytes == size_bytes &&
           (state.modified == modified || state.modified == hour_later || state.modified == hour_earlier);
  }
};

}  // namespace ondura::engines
