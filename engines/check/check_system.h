#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/ProgramMachine.h"

namespace ondura::check {

// What the kit asks of the system that it runs on. The build picks the system's files.

// A fresh folder for all machines of one run. Throws std::runtime_error if it can't be made.
std::string MakeCheckFolder();
void RemoveCheckFolder(const std::string& folder);

// The folder of a machine that users' files lie in, and the drive of its own that this is on; the drive is
// empty where the machine has none.
extern const char* const kDocuments;
extern const char* const kDocumentsDrive;

// A machine for one case.
struct CheckGround {
  std::unique_ptr<engines::ProgramMachine> owner;  // its clock's waits pass ten times as fast
  std::string install;                             // folders of the machine, which are there and empty
  std::string data;
  int speed = 1;                         // how much faster the engine's waits pass
  std::vector<std::string> environment;  // for a program that the machine starts with pipes
};

// With its own files in a new folder of the host. What was in kDocuments is gone. Throws std::runtime_error
// if it can't be made.
CheckGround MakeCheckGround(const std::string& folder);

// False for a check of what this system does not have.
bool IsForThisSystem(std::string_view check);

// Names of files that can be trouble, in UTF-8 as far as the system has it so.
std::vector<std::string> TroublesomeNames();

// Nobody can read the file as long as the answer lives. Throws NotOffered where nothing keeps us from it.
std::shared_ptr<void> MakeUnreadable(const std::filesystem::path& file);

// Programs of the host that have the process among their forebears, itself included, with what they were
// given.
struct HostProgram {
  int id = 0;
  std::string command_line;
  std::string environment;
  std::uint64_t resident_bytes = 0;
};
std::vector<HostProgram> ProgramsBelow(int id);

// False too for a program that has ended and that nobody has asked for its exit code.
bool IsRunning(int id);

}  // namespace ondura::check
