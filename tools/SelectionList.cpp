#include "SelectionList.h"

#include <algorithm>
#include <utility>

#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

bool SamePath(std::string_view left, std::string_view right) {
  return EqualsIgnoringCase(WithBackslash(left), WithBackslash(right));
}

}  // namespace

SelectionList::SelectionList(const Machine& machine, std::string path)
    : machine_(machine), path_(std::move(path)) {
  const auto lines = TextFiles(machine_.files, machine_.code_page).ReadLines(path_, Encoding::kUtf16);
  is_unreadable_ = !lines && machine_.files.Exists(path_);
  if (!lines) return;
  for (const auto& line : *lines) {
    if (!Trim(line).empty()) entries_.push_back(line);
  }
}

bool SelectionList::Add(const std::string& entry) {
  if (std::ranges::any_of(entries_, [&](const auto& other) { return SamePath(other, entry); })) return false;
  entries_.push_back(entry);
  return true;
}

bool SelectionList::Remove(std::string_view entry) {
  return std::erase_if(entries_, [&](const auto& other) { return SamePath(other, entry); }) > 0;
}

bool SelectionList::Save() const {
  if (is_unreadable_) return false;
  if (entries_.empty()) return !machine_.files.Exists(path_) || machine_.files.Remove(path_, Removal::kPlain);
  std::string text;
  for (const auto& entry : entries_) text.append(entry).append(kLineEnd);
  return TextFiles(machine_.files, machine_.code_page).Write(path_, text, Encoding::kUtf16);
}

}  // namespace ondura
