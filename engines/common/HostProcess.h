#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ondura::engines {

// What a program knows of its own process. The build picks the system's file.

// The words after the program's name, in UTF-8.
std::vector<std::string> ParameterWords(int count, const char* const* words);

// The same with one blank between them.
std::string ParameterText(int count, const char* const* words);

std::uint32_t OwnProcessId();

// The process that started this one.
class HostProcess {
 public:
  virtual ~HostProcess() = default;

  // False from the moment on that it has ended.
  virtual bool IsThere() = 0;
};

// Taken at the start of a program; never null.
std::unique_ptr<HostProcess> WatchHost();

}  // namespace ondura::engines
