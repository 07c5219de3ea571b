#pragma once

#include <string>
#include <string_view>

namespace ondura {

// File names of the host may hold what a Windows name can't: control characters, the reserved ones of
// `\ : * ? " < > |`, and bytes that are not UTF-8. The layers above see each such byte as the private-use
// character U+F000 + byte, which turns into the byte again on the way back.

// The name as it looks above. `scratch` holds it where it differs from the host's.
std::string_view WindowsName(std::string_view host_name, std::string& scratch);

// Appends the host's form of one part of a path.
void AppendHostName(std::string& host_path, std::string_view windows_name);

// The name in the form that two names of one file have in common.
std::string FoldedName(std::string_view windows_name);

}  // namespace ondura
