#pragma once

#include <string>
#include <string_view>

#include "engines/common/Client.h"

namespace ondura::engines {

// A list of paths in the user's folder, UTF-16, one a line, which grows without being kept in memory.
class NameList {
 public:
  NameList(Client& client, std::string_view name)
      : client_(client), path_(client.installation().UserFile(name)) {}

  void Add(std::string_view path);

  // Writes what is left. A list of nothing is an empty file.
  void Close();

 private:
  void Flush();

  Client& client_;
  std::string path_;
  std::string text_;
  bool is_begun_ = false;
};

}  // namespace ondura::engines
