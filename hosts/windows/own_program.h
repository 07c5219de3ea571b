#pragma once

#include <string>
#include <vector>

namespace ondura {

// The words of this process's command line in UTF-8, the program first. Those that main gets are in the
// system code page, which may lack characters of a path.
std::vector<std::string> CommandLineWords();

// What comes after the program on this process's command line, as it was given.
std::string CommandLineTail();

// Full path of the running program, its folder with a backslash at the end, and its bare name.
std::string OwnPath();
std::string OwnFolder();
std::string OwnName();

}  // namespace ondura
