#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ondura {

// Paths by their parts, letter case aside, so that what is above and below a path is found without a walk
// over all of them. Each path has a number of the caller's.
class PathIndex {
 public:
  using Numbers = std::vector<std::size_t>;

  // `path` with or without a trailing backslash. An empty path is left out.
  void Add(std::string_view path, std::size_t number);

  // Ends the adding; nothing is found before.
  void Sort();

  void Clear() { entries_.clear(); }

  // The paths that are `path` itself; that it lies in; that lie in it.
  [[nodiscard]] Numbers Same(std::string_view path) const;
  [[nodiscard]] Numbers Above(std::string_view path) const;
  [[nodiscard]] Numbers Below(std::string_view path) const;

 private:
  struct Entry {
    std::string key;
    std::size_t number = 0;
  };
  using Entries = std::vector<Entry>;

  [[nodiscard]] Entries::const_iterator FirstFrom(std::string_view key) const;
  void AddSame(std::string_view key, Numbers& numbers) const;

  Entries entries_;
};

}  // namespace ondura
