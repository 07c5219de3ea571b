#include "backupset/Selection.h"

#include "engine/engine_files.h"
#include "text/text.h"

namespace ondura {

namespace {

using engine_files::kAutomaticSelection;
using engine_files::kSelectionList;
constexpr std::string_view kTotalDisplaySize = "TotalDisplaySize.txt";

double NumberAt(const std::vector<std::string>& lines, std::size_t at) {
  return at < lines.size() ? ParseNumber(lines[at]).value_or(0) : 0;
}

}  // namespace

bool Selection::HasBackupSelection() {
  const auto automatic =
      text_files_.ReadFirstLine(installation_.UserFile(kAutomaticSelection), Encoding::kCodePage);
  if (automatic && automatic->find('1') != std::string::npos) return true;
  const auto first = text_files_.ReadFirstLine(installation_.UserFile(kSelectionList), Encoding::kUtf16);
  return first && !first->empty();
}

std::vector<SelectedItem> Selection::ReadItems() {
  const auto lines = text_files_.ReadLines(installation_.UserFile(kSelectionList), Encoding::kUtf16);
  trace_.User("  [Backup set]:");
  std::vector<SelectedItem> items;
  if (!lines) return items;
  FolderNames names{machine_};
  for (const std::string& line : *lines) AddLine(Trim(line), names, items);
  return items;
}

void Selection::AddLine(std::string_view line, FolderNames& names, std::vector<SelectedItem>& items) {
  if (line.empty()) return;
  if (line == "My Documents" || line == "Favorites") {
    // Nothing ever learns where the person's own folders are: the keyword is an item with an empty path.
    AddPath({}, names, items);
  } else if (line == "My Computer" || line == "My Compute") {
    for (const std::string& root : machine_.drives.Roots()) {
      items.push_back({root.substr(0, 2), ItemKind::kFolder});
    }
  } else {
    AddPath(std::string{line}, names, items);
  }
}

void Selection::AddPath(std::string path, FolderNames& names, std::vector<SelectedItem>& items) {
  // The folder test takes the empty path for the current folder, which is not what was selected.
  const bool is_folder = !path.empty() && names.IsFolderPath(path);
  if (is_folder && path.ends_with('\\')) path.pop_back();
  items.push_back({std::move(path), is_folder ? ItemKind::kFolder : ItemKind::kFile});
}

DisplaySize TotalDisplaySize::Read() {
  const auto lines = text_files_.ReadLines(installation_.UserFile(kTotalDisplaySize), Encoding::kUtf16);
  if (!lines) return {};
  return {NumberAt(*lines, 0), NumberAt(*lines, 1)};
}

void TotalDisplaySize::Add(const DisplaySize& more) {
  const DisplaySize present = Read();
  Write({present.size_bytes + more.size_bytes, present.files + more.files});
}

void TotalDisplaySize::Recreate() {
  const std::string path = installation_.UserFile(kTotalDisplaySize);
  files_.Remove(path, Removal::kForce);
  text_files_.CreateMissing(path, Encoding::kUtf16);
}

void TotalDisplaySize::Write(const DisplaySize& size) {
  std::string text = NumberText(size.size_bytes);
  text.append(kLineEnd).append(NumberText(size.files)).append(kLineEnd);
  text_files_.Write(installation_.UserFile(kTotalDisplaySize), text, Encoding::kUtf16);
}

}  // namespace ondura
