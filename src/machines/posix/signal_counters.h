#pragma once

#include <atomic>
#include <cstdint>

namespace ondura {

// What signal handlers have counted. A handler gets no object of ours, so this is the one variable at
// namespace scope; nobody but the handlers writes to it.
struct SignalCounters {
  std::atomic<std::uint32_t> file_changes{0};
  std::atomic<std::uint32_t> stop_requests{0};
};

static_assert(std::atomic<std::uint32_t>::is_always_lock_free, "a signal handler may not take a lock");

extern SignalCounters signal_counters;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

}  // namespace ondura
