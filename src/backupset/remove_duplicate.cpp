#include "backupset/remove_duplicate.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "text/text.h"

namespace ondura {

namespace {

constexpr std::chrono::milliseconds kPause{1};
constexpr std::size_t kEntriesBetweenPauses = 30;

// The entries with their upper-case texts in alphabetical order, so that all that begin with one of them
// stand in one run; what has gone is stepped over and never looked at again.
class DuplicateSearch {
 public:
  explicit DuplicateSearch(const std::vector<std::string>& list) : upper_(list.size()), order_(list.size()) {
    std::transform(list.begin(), list.end(), upper_.begin(), [](const auto& path) { return ToUpper(path); });
    std::iota(order_.begin(), order_.end(), std::size_t{0});
    std::sort(order_.begin(), order_.end(),
              [this](std::size_t left, std::size_t right) { return upper_[left] < upper_[right]; });
    next_.resize(list.size() + 1);
    std::iota(next_.begin(), next_.end(), std::size_t{0});
    place_.resize(list.size());
    for (std::size_t place = 0; place < order_.size(); ++place) {
      place_[order_[place]] = place;
      same_[std::string{Trim(upper_[order_[place]])}].push_back(order_[place]);
    }
  }

  bool Stays(std::size_t entry) const { return next_[place_[entry]] == place_[entry]; }

  void RemoveSameAs(std::size_t entry) {
    auto& same = same_[std::string{Trim(upper_[entry])}];
    for (const std::size_t other : same) {
      if (other != entry) Remove(place_[other]);
    }
    same.assign(1, entry);
  }

  void RemoveWhatBeginsWith(std::size_t entry) {
    const auto first =
        std::lower_bound(order_.begin(), order_.end(), upper_[entry],
                         [this](std::size_t other, const std::string& text) { return upper_[other] < text; });
    std::size_t place = NextStaying(static_cast<std::size_t>(first - order_.begin()));
    while (place < order_.size() && upper_[order_[place]].starts_with(upper_[entry])) {
      if (order_[place] != entry) Remove(place);
      place = NextStaying(place + 1);
    }
  }

 private:
  void Remove(std::size_t place) { next_[place] = place + 1; }

  std::size_t NextStaying(std::size_t place) {
    std::size_t staying = place;
    while (next_[staying] != staying) staying = next_[staying];
    while (next_[place] != staying) place = std::exchange(next_[place], staying);
    return staying;
  }

  std::vector<std::string> upper_;
  std::vector<std::size_t> order_;  // entries by text
  std::vector<std::size_t> place_;  // of each entry in order_
  std::vector<std::size_t> next_;   // the place itself while its entry stays, else one further on
  std::unordered_map<std::string, std::vector<std::size_t>> same_;
};

}  // namespace

void RemoveDuplicate(const Machine& machine, std::vector<std::string>& list) {
  DuplicateSearch search{list};
  std::vector<std::string> kept;
  for (std::size_t entry = 0; entry < list.size(); ++entry) {
    if (search.Stays(entry)) {
      if (machine.files.Exists(list[entry])) {
        search.RemoveSameAs(entry);
      } else {
        search.RemoveWhatBeginsWith(entry);
      }
    }
    if ((entry + 1) % kEntriesBetweenPauses == 0) {
      machine.clock.Sleep(kPause);
      machine.pump.Pump();
    }
  }
  for (std::size_t entry = 0; entry < list.size(); ++entry) {
    if (search.Stays(entry)) kept.push_back(std::move(list[entry]));
  }
  list = std::move(kept);
}

}  // namespace ondura
