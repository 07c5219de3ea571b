#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ondura {

// What the mail helper was told on its command line.
struct MailOptions {
  std::string root;     // the machine's folder; of no meaning where the machine is the host itself
  std::string install;  // install folder as the machine sees it
  std::string text;     // the fields, joined by ";"
};

// The options, or the code to leave with at once: 0 after --help and --version, which have been printed, and
// kExitUsage after an error text on stderr.
struct ParsedMailOptions {
  std::optional<MailOptions> options;
  int exit_code = 0;
};

// `defaults` holds for what is not said. `words` are those after the program's name.
ParsedMailOptions ParseMailOptions(std::vector<std::string> words, MailOptions defaults);

}  // namespace ondura
