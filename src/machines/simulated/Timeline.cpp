#include "machines/simulated/Timeline.h"

#include <algorithm>
#include <stdexcept>

namespace ondura {

LocalTime Timeline::Now() const { return std::chrono::floor<std::chrono::seconds>(wall_start_ + elapsed_); }

void Timeline::SetNow(LocalTime now) {
  wall_start_ = now - elapsed_;
  Stir();
}

void Timeline::After(Milliseconds delay, Owner owner, Action action, Hope hope) {
  const Milliseconds moment = elapsed_ + std::max(delay, Milliseconds{0});
  actions_.emplace(std::pair{moment, next_number_++}, Entry{owner, std::move(action), hope});
  if (hope == Hope::kMayEndWaits) ++hopes_;
}

void Timeline::DropAll(Owner owner) {
  std::erase_if(actions_, [&](const auto& entry) {
    const bool is_dropped = entry.second.owner == owner;
    if (is_dropped && entry.second.hope == Hope::kMayEndWaits) --hopes_;
    return is_dropped;
  });
}

void Timeline::RunFirst() {
  const auto first = actions_.extract(actions_.begin());
  elapsed_ = std::max(elapsed_, first.key().first);
  if (first.mapped().hope == Hope::kMayEndWaits) {
    --hopes_;
    Stir();
  }
  first.mapped().action();
}

void Timeline::Spend(Milliseconds duration, const std::function<bool()>& is_over) {
  const Milliseconds longest = Milliseconds::max() - elapsed_;
  const Milliseconds end = elapsed_ + std::clamp(duration, Milliseconds{0}, longest);
  while (!is_over()) {
    if (actions_.empty() || actions_.begin()->first.first > end) {
      elapsed_ = std::max(elapsed_, end);
      return;
    }
    RunFirst();
  }
}

void Timeline::Wait(Milliseconds duration, const std::function<bool()>& is_over) {
  if (!HasHope() && !is_over()) {
    const bool is_too_long = duration > longest_wait_ - (elapsed_ - waiting_since_);
    if (++waits_ > most_waits_ || is_too_long) {
      throw std::runtime_error("the component waits for something that nobody on the machine will do");
    }
  }
  Spend(duration, is_over);
}

void Timeline::SetPatience(std::chrono::hours longest, std::uint64_t most_waits) {
  longest_wait_ = longest;
  most_waits_ = most_waits;
}

void Timeline::Stir() {
  waiting_since_ = elapsed_;
  waits_ = 0;
}

}  // namespace ondura
