#include "mail_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

#include "text/text.h"
#include "tick_options.h"

namespace ondura {

namespace {

constexpr const char* kFooter =
    R"(The scheduler starts it at the end of a job, with one text of ten or eleven fields:
  address;detail;result;short date format;session log;status;scheduled time;stage word;reason;user;engine status
Detail "1" adds an extract of the session log; result 2 is success, 3 a failed or missed start. The last field
may be missing. The status may hold ";".

Example:
  OndruaEStartup.exe "ann@example.com;0;2;M/d/yyyy;C:\Data\Onduraann\Session\Scheduled 11-14-2026 12-30-00.txt;Done.;11/14/2026 12:30:00 PM; ;;ann;402"

Exit codes: 0 sent, or nothing to tell because the session log is missing or empty; 1 the mail is lost;
2 bad arguments, machine or configuration.)";

}  // namespace

ParsedMailOptions ParseMailOptions(std::vector<std::string> words, MailOptions defaults) {
  MailOptions options = std::move(defaults);
  std::vector<std::string> text;
  CLI::App app{"Sends the notification mail of a scheduled backup.", "OndruaEStartup"};
  app.set_version_flag("--version", "OndruaEStartup " ONDURA_VERSION);
  app.footer(kFooter);
  app.add_option("--root", options.root, "Folder that holds the machine, where it is kept in one")
      ->type_name("DIR");
  app.add_option("--install", options.install, "Install folder; that of this program by default")
      ->type_name("PATH");
  app.add_option("text", text, "The fields, joined by \";\"")->required()->type_name("TEXT");
  std::ranges::reverse(words);  // the parser takes them from the end
  try {
    app.parse(std::move(words));
  } catch (const CLI::ParseError& error) {
    return {std::nullopt, app.exit(error) == 0 ? 0 : kExitUsage};
  }
  // The shell split the text at blanks, which the fields may hold; join it again.
  options.text = Join(text, " ");
  return {std::move(options), 0};
}

}  // namespace ondura
