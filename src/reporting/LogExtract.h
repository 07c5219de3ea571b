#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "reporting/LinesFromEnd.h"
#include "reporting/mail_values.h"
#include "util/TextFiles.h"

namespace ondura {

// The parts of a session log that go into a mail. The log is walked from its end; the lines taken are also
// appended to a work file, whose size ends the walk.
class LogExtract {
 public:
  LogExtract(const Machine& machine, const Installation& installation, MailValues& values)
      : machine_(machine),
        installation_(installation),
        values_(values),
        text_files_(machine.files, machine.code_page) {}

  // The lines at the log's end, about 20000 bytes of them, in file order and encoded by URLEncodeWebd, each
  // after it with CR LF. The figures of the last closing line are put after MailSubject. Empty for a
  // missing log and one without a line end.
  std::string ReadLinesfromtracefiles(std::string_view sFilepath);

  // The same with the summary lines alone.
  std::string ReadLinesfromtracefilesWithoutLogExtract(std::string_view sFilepath);

  // AppendFileData on the work file.
  void AppendLogAttach(std::string_view sLine);

  // Appends the trimmed text as a line in UTF-16, making the file and the product's folder where they are
  // missing. A line that can't be written is lost.
  void AppendFileData(std::string_view sFilepath, std::string_view sentry);

 private:
  // Which lines a mail gets, and the words of an ending that has no closing line.
  struct Kind;

  std::string Extract(std::string_view path, const Kind& kind);
  std::string TakeLines(LinesFromEnd& lines, const Kind& kind);
  void ExtendSubject(LinesFromEnd& lines, const Kind& kind);
  [[nodiscard]] std::string WorkFile() const;

  Machine machine_;
  const Installation& installation_;
  MailValues& values_;
  TextFiles text_files_;
};

}  // namespace ondura
