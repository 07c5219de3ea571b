#pragma once

#include <string>
#include <string_view>

namespace ondura {

// Where text crosses between the component's UTF-8 and what the platform's calls take.

// UTF-16 for the W calls, there and back. A lone surrogate, which names may hold, stays one; what else is not
// UTF-8 becomes U+FFFD.
std::wstring ToWide(std::string_view utf8);
std::string FromWide(std::wstring_view wide);

// Bytes of the system code page for the A calls. Characters that the page lacks become "?", never a similar
// letter: another name would be another file.
std::string ToSystem(std::string_view utf8);
std::string FromSystem(std::string_view bytes);

}  // namespace ondura
