#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"

namespace ondura {

inline constexpr std::string_view kIdleWord = "0";

// The first line of a schedule file is its header word: "0" while it is idle, the number of the running
// job's record otherwise. It is the meeting place with the user interface and is changed in place, so that
// the records after it are never touched.

// The word as it is, not trimmed; empty for an empty file. std::nullopt when the file can't be read.
std::optional<std::string> ReadHeaderWord(Files& files, std::string_view path);

// The word of a record number, or of the idle "0". It is always one byte long, as a longer one would eat into
// the first record: any other kind is a file job.
std::string_view HeaderWordOf(std::string_view recordno);

// Overwrites the header line with `word`, one byte. False when the file is missing, which stays so, when it
// is not writable, and when its first line has no room for a word alone, as where a record is in its place.
bool WriteHeaderWord(Files& files, std::string_view path, std::string_view word);

// Turns a first byte that is the code of a kind, left by a job that was cut off, back to the idle word. True
// when it did.
bool ResetStaleHeader(Files& files, std::string_view path);

}  // namespace ondura
