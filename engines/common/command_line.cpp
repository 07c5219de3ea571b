#include "engines/common/command_line.h"

namespace ondura::engines {

std::string JoinWords(int count, const char* const* words) {
  std::string text;
  for (int at = 1; at < count; ++at) {
    if (at > 1) text += ' ';
    text += words[at];
  }
  return text;
}

}  // namespace ondura::engines
