#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ondura {

// A text for a program that neither a file nor its command line or environment may hold.
struct PipedSecret {
  std::string variable;  // of the environment: gets the path at which the program reads the text, once
  std::string text{};
  std::string option{};  // of the command line, in the place of a variable: the path is the word after it
};

// A program of the system that is started with pipes. Paths have the system's own form here
// (Processes::SystemPath).
struct PipedRequest {
  std::string file{};                      // a bare name is looked for where the system looks for programs
  std::vector<std::string> arguments{};    // one a word; quoting is the port's
  std::string folder{};                    // working folder; empty for the present one
  std::vector<std::string> environment{};  // "NAME=value"; the program gets these alone
  std::string input{};                 // its standard input, at most kPipedTextLimit bytes, which then ends
  std::vector<PipedSecret> secrets{};  // each at most kPipedTextLimit bytes
};

// What a pipe takes in before anybody reads.
inline constexpr std::size_t kPipedTextLimit = 32768;

enum class PipeStream { kOutput, kError };

struct PipedLine {
  PipeStream stream = PipeStream::kOutput;
  std::string text;  // without its end, in the bytes of the program
};

// A program started by Processes::Start. Object and program end together: the program is ended when the
// object goes, and when this process ends, however that comes about.
class PipedProgram {
 public:
  virtual ~PipedProgram() = default;

  // The next line that the program printed, waiting at most `limit` of real time for it or for the program's
  // end. std::nullopt if none came, and after the last.
  virtual std::optional<PipedLine> NextLine(std::chrono::milliseconds limit) = 0;

  // The exit code once the program has ended and every line has been taken; std::nullopt before.
  virtual std::optional<std::uint32_t> ExitCode() = 0;

  // Asks the program to end as a person at its terminal would: SIGINT, or CTRL_BREAK_EVENT. Nothing happens
  // if it has ended.
  virtual void Interrupt() = 0;

  // Ends it at once. Lines that it printed before can still be taken.
  virtual void Kill() = 0;
};

}  // namespace ondura
