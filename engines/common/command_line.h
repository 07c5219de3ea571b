#pragma once

#include <string>

namespace ondura::engines {

// The words of a command line as one text again. The argument is never quoted, so that a folder with
// blanks in it arrives in several words.
std::string JoinWords(int count, const char* const* words);

}  // namespace ondura::engines
