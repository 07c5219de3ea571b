#include "result_words.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace ondura {

namespace {

struct Meaning {
  int result;
  std::string_view words;
};

constexpr std::array kMeanings = {
    Meaning{402, "done"},
    Meaning{426, "nothing was sent, all is up to date"},
    Meaning{0, "no result yet"},
    Meaning{100, "preparing the SQL Server dump"},
    Meaning{200, "preparing the System State"},
    Meaning{300, "preparing the Exchange store dump"},
    Meaning{400, "preparing the Exchange mailbox dump"},
    Meaning{-1, "the engine ended abnormally"},
    Meaning{-40, "no port information for this account"},
    Meaning{-403, "wrong account password"},
    Meaning{-404, "wrong encryption password"},
    Meaning{-405, "no connection to the server"},
    Meaning{-409, "nothing is selected"},
    Meaning{-411, "nothing new to back up"},
    Meaning{-414, "cancelled"},
    Meaning{-416, "no connection to the server"},
    Meaning{-418, "nothing new to back up"},
    Meaning{-424, "cancelled"},
    Meaning{-425, "nothing new to back up"},
    Meaning{-426, "all that is selected is excluded"},
    Meaning{-427, "the engine asked for another run"},
    Meaning{-429, "the account is locked by an aborted session; try later"},
    Meaning{-431, "the installation is damaged"},
    Meaning{-432, "the storage quota is used up"},
    Meaning{-434, "another machine is backing up this account"},
    Meaning{-504, "no connection to the server"},
    Meaning{-507, "the schedule was ended by the server"},
    Meaning{-514, "the schedule was ended by the server"},
    Meaning{-1001, "some files could not be backed up"},
    Meaning{-12008, "the proxy refused the connection"},
    Meaning{-12009, "the proxy refused the connection"},
    Meaning{-12010, "the proxy refused the connection"},
};

}  // namespace

std::string ResultWords(int result) {
  const auto found = std::ranges::find(kMeanings, result, &Meaning::result);
  return found == kMeanings.end() ? "a result without a known meaning" : std::string{found->words};
}

}  // namespace ondura
