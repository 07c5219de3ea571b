#include "reporting/LogExtract.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <vector>

#include "reporting/mail_encoding.h"
#include "text/separators.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr std::uint64_t kWorkFileLimitBytes = 20000;
constexpr std::int64_t kLinesPerRest = 50;

// The head of a log that is longer than this holds no closing line, and is not searched for one.
constexpr std::int64_t kShortLogIndex = 15;
constexpr std::int64_t kHeadIndex = 10;

constexpr std::array<std::string_view, 2> kClosingHeads{"Backup Canceled", "Backup Completed"};
constexpr std::array<std::string_view, 3> kSummaryTexts{
    "Backed up Files", "Number of files found to be in sync :", "Number of files considered for Backup:"};

bool IsBlank(std::string_view line) { return Trim(TrimAtTerminator(line)).empty(); }

bool Holds(std::string_view lower_line, std::string_view text) {
  return lower_line.find(ToLower(text)) != std::string_view::npos;
}

}  // namespace

struct LogExtract::Kind {
  bool takes_every_line;
  std::array<std::string_view, 2> cut_off_texts;

  // How many times a line that isn't blank is taken: a summary line once for each text it holds.
  [[nodiscard]] std::ptrdiff_t TimesTaken(std::string_view line) const {
    if (takes_every_line) return 1;
    return std::ranges::count_if(kSummaryTexts,
                                 [lower = ToLower(line)](auto text) { return Holds(lower, text); });
  }

  [[nodiscard]] bool IsClosingLine(std::string_view line) const {
    const std::string lower = ToLower(Trim(line));
    const auto begins_line = [&](auto head) { return lower.starts_with(ToLower(head)); };
    return std::ranges::any_of(kClosingHeads, begins_line) ||
           std::ranges::all_of(cut_off_texts, [&](auto text) { return Holds(lower, text); });
  }
};

std::string LogExtract::ReadLinesfromtracefiles(std::string_view sFilepath) {
  return Extract(sFilepath, {true, {"Backed up files", "hard stop"}});
}

std::string LogExtract::ReadLinesfromtracefilesWithoutLogExtract(std::string_view sFilepath) {
  return Extract(sFilepath, {false, {"Backed up Files", "Cut Off"}});
}

std::string LogExtract::Extract(std::string_view path, const Kind& kind) {
  machine_.pump.Pump();
  if (!machine_.files.Exists(path)) return {};
  const std::string work_file = WorkFile();
  if (!machine_.files.Exists(work_file)) text_files_.Write(work_file, "", Encoding::kUtf16);
  LinesFromEnd lines(machine_.files, path);
  std::string extract = lines.HighestIndex() > 0 ? TakeLines(lines, kind) : "";
  ExtendSubject(lines, kind);
  if (machine_.files.Exists(work_file)) machine_.files.Remove(work_file, Removal::kPlain);
  return extract;
}

std::string LogExtract::TakeLines(LinesFromEnd& lines, const Kind& kind) {
  std::vector<std::string> taken;
  std::optional<std::uint64_t> work_file_bytes;
  for (std::int64_t index = lines.HighestIndex(); const auto line = lines.Previous(); --index) {
    machine_.pump.Pump();
    if (!IsBlank(*line)) {
      for (auto times = kind.TimesTaken(*line); times > 0; --times) {
        taken.push_back(URLEncodeWebd(*line).append(kLineEnd));
        AppendLogAttach(TrimAtTerminator(*line));
        work_file_bytes.reset();
      }
      if (!work_file_bytes) work_file_bytes = machine_.files.Size(WorkFile()).value_or(0);
      if (*work_file_bytes >= kWorkFileLimitBytes) break;
    }
    if (index % kLinesPerRest == 0) machine_.clock.Sleep(std::chrono::milliseconds{1});
  }
  std::ranges::reverse(taken);
  return Join(taken, "");
}

// The last line is what comes after the last line end, and so never a closing line.
void LogExtract::ExtendSubject(LinesFromEnd& lines, const Kind& kind) {
  const std::int64_t highest = lines.HighestIndex();
  lines.Rewind();
  lines.Previous();
  for (std::int64_t index = highest - 1; index >= (highest > kShortLogIndex ? kHeadIndex : 0); --index) {
    const auto line = lines.Previous();
    if (!line) return;
    if (IsBlank(*line) || !kind.IsClosingLine(*line)) continue;
    const auto figures = line->find('[');
    if (figures != std::string::npos) values_.MailSubject.append(*line, figures);
    return;
  }
}

void LogExtract::AppendLogAttach(std::string_view sLine) { AppendFileData(WorkFile(), sLine); }

void LogExtract::AppendFileData(std::string_view sFilepath, std::string_view sentry) {
  const std::string folder = installation_.DataFile(installation_.ProductInstallationName);
  if (!machine_.folders.Exists(folder)) machine_.folders.Make(folder);
  if (!machine_.files.Exists(sFilepath)) text_files_.CreateMissing(sFilepath, Encoding::kUtf16);
  text_files_.Append(sFilepath, std::string{Trim(sentry)}.append(kLineEnd), Encoding::kUtf16,
                     IfMissing::kFail);
}

std::string LogExtract::WorkFile() const {
  return installation_.DataFile(installation_.ProductInstallationName) + "\\TmpLogAttach.txt";
}

}  // namespace ondura
