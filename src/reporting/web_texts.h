#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ondura {

// The sentence for the number of a file error; empty for a number without one.
std::string_view FileErrorText(std::int32_t number);

// The sentence for an HTTP status and the verb of its request, whose letter case counts. std::nullopt for a
// status that the verb expects. Other statuses, successes too, are unknown errors.
std::optional<std::string> WebStatusText(std::int32_t code, std::string_view verb);

// The sentence for an error number of the platform's internet calls.
std::string_view InternetErrorText(std::uint32_t number);

}  // namespace ondura
