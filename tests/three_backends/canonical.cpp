#include <algorithm>
#include <regex>
#include <set>
#include <vector>

#include "engines/common/CompareList.h"
#include "scenario.h"
#include "text/text.h"
#include "text/utf16.h"
#include "util/TextFiles.h"
#include "util/date_text.h"

namespace ondura::scenario {

namespace {

using namespace std::chrono_literals;

// The entries' paths in order, those of folders with a backslash at the end.
std::vector<std::string> EntriesOf(Folders& folders, const std::string& folder) {
  std::vector<std::string> paths;
  folders.List(folder, [&](const FolderEntry& entry) {
    paths.push_back(folder + std::string{entry.name} + (entry.is_folder ? "\\" : ""));
    return Visit::kContinue;
  });
  std::ranges::sort(paths, {}, [](const std::string& path) { return ToLower(path); });
  return paths;
}

// Traces tell each look at a process, of which a slow machine makes more, and programs differ of course.
bool IsLeftOut(const std::string& path) {
  return path.ends_with(".exe") ||
         EqualsIgnoringCase(path.substr(path.rfind('\\') + 1), "ScheduleTraceFile.txt");
}

class Masks {
 public:
  explicit Masks(LocalTime today) {
    for (const int day : {0, 1}) {
      const LocalTime date = today + std::chrono::days{day};
      const std::string name = day == 0 ? "<today>" : "<tomorrow>";
      Add(FormatDate("mm-dd-yyyy", date), name);
      Add("\\b" + FormatDate("yyyymmdd", date) + "\\d{4}\\b", name + "<HHmm>");
    }
    Add("\\b\\d{1,2}[:-]\\d\\d[:-]\\d\\d\\b", "<time>");
    Add("\\b\\d{1,2}_\\d\\d_\\d\\d_\\w+", "<moment>");
    Add("(Duration in seconds : )\\d+", "$1<n>");
    Add("(DriveList=C:\\|).*", "$1<other drives>");
    Add("((ScannerId|TrayIconDay|TrayIconMonth|TrayIconYear)=).*", "$1<n>");
  }

  [[nodiscard]] std::string Apply(std::string text) const {
    for (const auto& [pattern, name] : masks_) text = std::regex_replace(text, pattern, name);
    return text;
  }

 private:
  void Add(const std::string& pattern, const std::string& name) {
    masks_.emplace_back(std::regex(pattern), name);
  }

  std::vector<std::pair<std::regex, std::string>> masks_;
};

// The three times of a compare-list line by how they lie to one another.
std::string CompareLine(const std::string& line) {
  const auto candidate = engines::ParseCompareLine(line);
  if (!candidate) return line;
  const bool is_right = candidate->hour_later - candidate->modified == 1h &&
                        candidate->modified - candidate->hour_earlier == 1h;
  return candidate->path + "/" + std::to_string(candidate->size_bytes) +
         (is_right ? "/<modified>/<an hour later>/<an hour earlier>" : line.substr(line.find('/')));
}

// Sections and keys in order; the order in a file is that of the writes, which nobody relies on.
std::vector<std::string> SortedIni(const std::vector<std::string>& lines) {
  std::multiset<std::pair<std::string, std::string>> keys;
  std::string section;
  for (const std::string& line : lines) {
    if (line.starts_with('[')) section = line;
    if (!Trim(line).empty()) keys.emplace(section, line == section ? "" : line);
  }
  std::vector<std::string> sorted;
  for (const auto& [name, key] : keys) sorted.push_back(key.empty() ? name : key);
  return sorted;
}

std::string Visible(const std::string& text) { return ReplaceAll(text, "\b", "<BS>"); }

// No machine promises in which order a folder shows its files, so neighbouring lines about files are put in
// order.
void SortPaths(std::vector<std::string>& lines) {
  const auto is_about_file = [](const std::string& line) { return line.find(kRoot) != std::string::npos; };
  auto begin = std::ranges::find_if(lines, is_about_file);
  while (begin != lines.end()) {
    const auto end = std::find_if_not(begin, lines.end(), is_about_file);
    std::sort(begin, end);
    begin = std::find_if(end, lines.end(), is_about_file);
  }
}

std::string CanonicalFile(const Machine& machine, const std::string& path, const Masks& masks) {
  const std::string bytes = machine.files.Read(path).value_or("<can't be read>");
  const bool is_utf16 = bytes.starts_with(kUtf16Mark);
  const std::string text = is_utf16 ? FromUtf16(bytes) : machine.code_page.ToUtf8(bytes);
  std::vector<std::string> lines = LinesOf(text);
  if (path.ends_with(".ini")) lines = SortedIni(lines);
  for (std::string& line : lines) line = masks.Apply(Visible(CompareLine(line)));
  SortPaths(lines);
  std::string result = "== " + masks.Apply(path) + (is_utf16 ? " (UTF-16)" : "") + "\n";
  for (const std::string& line : lines) result += line + "\n";
  return result;
}

void Append(const Machine& machine, const std::string& folder, const Masks& masks, std::string& result) {
  for (const std::string& path : EntriesOf(machine.folders, folder)) {
    if (path.ends_with('\\')) {
      result += "== " + masks.Apply(path) + "\n";
      Append(machine, path, masks, result);
    } else if (!IsLeftOut(path)) {
      result += CanonicalFile(machine, path, masks);
    }
  }
}

}  // namespace

std::string CanonicalFiles(const Machine& machine, const std::string& folder, LocalTime today) {
  std::string result;
  Append(machine, folder, Masks(today), result);
  return result;
}

}  // namespace ondura::scenario
