#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ondura {

// What a machine folder needs done from the host's side. All of it throws Failure.

// Makes the folder of a machine with its drive C and writes the mapped drives ("D=/srv/data") to its
// machine.ini. A folder that holds a machine is refused unless `force`.
void PrepareRoot(const std::string& root, const std::vector<std::string>& drives, bool force);

// Copies a file of the host to `path` on the machine's drive C and makes it executable.
void InstallProgram(const std::string& from, const std::string& root, std::string_view path);

// The project's own program of that name: beside this one, or where the build has it. Empty if it is not
// there.
std::string FindOwnProgram(const std::string& name);

}  // namespace ondura
