#pragma once

#include <string>
#include <vector>

namespace ondura {

// One word for a command line that the program takes apart by the rules of CommandLineToArgvW.
std::wstring QuotedArgument(const std::wstring& argument);

// The environment for a new process from "NAME=value" texts: sorted as the system wants it, with SystemRoot
// of this process, without which neither sockets nor random numbers are there.
std::wstring EnvironmentBlock(const std::vector<std::string>& variables);

// Where a program is: a path as it is, a bare name beside this program or in the folders of PATH, never in
// the working folder, where others may have put one. Empty if there is none.
std::wstring FindProgram(const std::string& file);

}  // namespace ondura
