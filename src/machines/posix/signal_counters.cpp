#include "machines/posix/signal_counters.h"

namespace ondura {

SignalCounters signal_counters;

}  // namespace ondura
