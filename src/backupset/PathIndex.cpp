#include "backupset/PathIndex.h"

#include <algorithm>

#include "text/text.h"

namespace ondura {

namespace {

// Every part ends in a backslash, so that a path begins with all that is above it and with nothing else.
std::string KeyOf(std::string_view path) { return ToLower(WithBackslash(path)); }

}  // namespace

void PathIndex::Add(std::string_view path, std::size_t number) {
  if (!path.empty()) entries_.push_back({KeyOf(path), number});
}

void PathIndex::Sort() {
  std::sort(entries_.begin(), entries_.end(), [](const Entry& left, const Entry& right) {
    return left.key != right.key ? left.key < right.key : left.number < right.number;
  });
}

PathIndex::Numbers PathIndex::Same(std::string_view path) const {
  Numbers numbers;
  AddSame(KeyOf(path), numbers);
  return numbers;
}

PathIndex::Numbers PathIndex::Above(std::string_view path) const {
  const std::string key = KeyOf(path);
  Numbers numbers;
  for (auto at = key.find('\\'); at + 1 < key.size(); at = key.find('\\', at + 1)) {
    AddSame(std::string_view{key}.substr(0, at + 1), numbers);
  }
  return numbers;
}

PathIndex::Numbers PathIndex::Below(std::string_view path) const {
  const std::string key = KeyOf(path);
  Numbers numbers;
  for (auto entry = FirstFrom(key); entry != entries_.end() && entry->key.starts_with(key); ++entry) {
    if (entry->key.size() > key.size()) numbers.push_back(entry->number);
  }
  return numbers;
}

PathIndex::Entries::const_iterator PathIndex::FirstFrom(std::string_view key) const {
  return std::lower_bound(entries_.begin(), entries_.end(), key,
                          [](const Entry& entry, std::string_view wanted) { return entry.key < wanted; });
}

void PathIndex::AddSame(std::string_view key, Numbers& numbers) const {
  for (auto entry = FirstFrom(key); entry != entries_.end() && entry->key == key; ++entry) {
    numbers.push_back(entry->number);
  }
}

}  // namespace ondura
