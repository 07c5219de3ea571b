#pragma once

#include <string>
#include <string_view>

namespace ondura {

// Where a host says what went wrong. A person at the console reads stderr; a program that nobody watches
// writes to the event log.
class Reporter {
 public:
  enum class Place { kConsole, kEventLog };

  // `source` names the program, or the service, in front of the text or in the event log.
  Reporter(std::string source, Place place) : source_(std::move(source)), place_(place) {}

  void Error(std::string_view message) const;
  void Note(std::string_view message) const;

 private:
  enum class Kind { kError, kNote };

  void Say(Kind kind, std::string_view message) const;

  std::string source_;
  Place place_;
};

// Joins a windowed program to the console that it was started from, if any, so that it can print. False when
// there is nobody who could read.
bool UseParentConsole();

// For the program that runs: the console that it was started from, otherwise the event log.
Reporter UsualReporter(std::string source);

}  // namespace ondura
