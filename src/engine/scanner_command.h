#pragma once

#include <string_view>

namespace ondura::scanner_command {

// What the scanner of the local database is started with.
inline constexpr std::string_view kRebuildForJob = "29";
inline constexpr std::string_view kSevenDayReset = "5";

}  // namespace ondura::scanner_command
