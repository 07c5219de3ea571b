#include "machines/posix/signal_counters.h"

namespace ondura {

SignalCounters signal_counters;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

}  // namespace ondura
