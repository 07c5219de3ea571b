#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ondura {

// Paths by their parts, letter case aside, so that what lies above and below a path is found without a walk
// over all of them. Each has a number; the answers are in the order of the numbers.
class PathIndex {
 public:
  // `path` with or without a trailing backslash. An empty path is left out.
  void Add(std::string_view path, std::size_t number);

  // Ends the adding; nothing is found before.
  void Sort();

  void Clear() { entries_.clear(); }

  // The paths that are `path` itself, above it, or below it.
  [[nodiscard]] std::vector<std::size_t> Same(std::string_view path) const;
  [[nodiscard]] std::vector<std::size_t> Above(std::string_view path) const;
  [[nodiscard]] std::vector<std::size_t> Below(std::string_view path) const;

 private:
  struct Entry {
    std::string key;
    std::size_t number = 0;
  };

  std::vector<Entry> entries_;
};

}  // namespace ondura
