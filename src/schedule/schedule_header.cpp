#include "schedule/schedule_header.h"

#include "schedule/job_kind.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

// Headers are one character long; of a file that is something else a piece is enough to tell.
constexpr std::size_t kHeaderLimitBytes = 256;

}  // namespace

std::optional<std::string> ReadHeaderWord(Files& files, std::string_view path) {
  const auto head = files.ReadHead(path, kHeaderLimitBytes);
  if (!head) return std::nullopt;
  const auto lines = LinesOf(*head);
  return lines.empty() ? std::string{} : lines.front();
}

std::string_view HeaderWordOf(std::string_view recordno) {
  return recordno == kIdleWord || JobKindOf(recordno) ? recordno : CodeOf(JobKind::kFiles);
}

bool WriteHeaderWord(Files& files, std::string_view path, std::string_view word) {
  const auto head = files.ReadHead(path, 2);
  if (!head) return false;
  if (head->size() < 2) return files.Patch(path, 0, std::string{word}.append(kLineEnd));
  const bool has_line_end = head->back() == '\r' || head->back() == '\n';
  return has_line_end && files.Patch(path, 0, word);
}

bool ResetStaleHeader(Files& files, std::string_view path) {
  const auto first = files.ReadHead(path, 1);
  return first && JobKindOf(*first) && WriteHeaderWord(files, path, kIdleWord);
}

}  // namespace ondura
