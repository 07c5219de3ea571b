#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <utility>

#include "platform/local_time.h"

namespace ondura {

// Virtual time: what is scheduled, the wall clock over it, and the passing of it.
class Timeline {
 public:
  using Milliseconds = std::chrono::milliseconds;
  using Action = std::function<void()>;
  using Owner = std::uint64_t;  // 0 is nobody

  explicit Timeline(LocalTime start) : wall_start_(start) {}

  Milliseconds Elapsed() const { return elapsed_; }
  LocalTime Now() const;
  Milliseconds Until(LocalTime moment) const { return moment - (wall_start_ + elapsed_); }
  void SetNow(LocalTime now);

  // What recurs for ever does not count as something that could end a wait.
  enum class Hope { kMayEndWaits, kNone };
  void After(Milliseconds delay, Owner owner, Action action, Hope hope = Hope::kMayEndWaits);
  void DropAll(Owner owner);

  // Lets `duration` pass. Each action that falls due acts at its own moment; actions may let time pass
  // themselves, so more than `duration` may be gone afterwards, never less. Stops early once `is_over`.
  void Spend(Milliseconds duration, const std::function<bool()>& is_over);

  // The same on behalf of the component: one that waits longer or oftener than the patience lasts while
  // nothing is scheduled gets std::runtime_error instead of hanging the test.
  void Wait(Milliseconds duration, const std::function<bool()>& is_over);

  void SetPatience(std::chrono::hours longest, std::uint64_t most_waits);

  // Somebody beside the component did something, so that its waiting may yet end.
  void Stir();

 private:
  struct Entry {
    Owner owner = 0;
    Action action;
    Hope hope = Hope::kMayEndWaits;
  };

  bool HasHope() const { return hopes_ > 0; }
  void RunFirst();

  std::chrono::local_time<Milliseconds> wall_start_;
  Milliseconds elapsed_{0};
  std::uint64_t next_number_ = 0;
  // By moment, and in the order of scheduling within one.
  std::map<std::pair<Milliseconds, std::uint64_t>, Entry> actions_;
  std::size_t hopes_ = 0;  // actions that may end waits
  Milliseconds longest_wait_ = std::chrono::hours{24 * 400};
  std::uint64_t most_waits_ = 2'000'000;
  Milliseconds waiting_since_{0};
  std::uint64_t waits_ = 0;
};

}  // namespace ondura
