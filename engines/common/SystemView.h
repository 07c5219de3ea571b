#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/machine.h"

namespace ondura::engines {

// How the machine's files look to a program of the system that saves them, and in what it has saved.
//
// A saved path begins with the drive's letter on every system: `D:\Documents\x` is kept as "/D/Documents/x".
// The build picks the system's file.
class SystemView {
 public:
  virtual ~SystemView() = default;

  // The folder to start the program in, in the system's form. Empty where any will do.
  [[nodiscard]] virtual const std::string& folder() const = 0;

  // The path as the program takes it from that folder. Empty for a path that can't be saved: on no drive, or
  // a drive's root on a system where the program takes only what is in it.
  virtual std::string TargetOf(std::string_view path) = 0;

  // The same as a full path.
  virtual std::string FullPathOf(std::string_view path) = 0;

  // Whether the program's patterns take a backslash for the sign that the next character is itself.
  [[nodiscard]] virtual bool EscapesByBackslash() const = 0;

  // Whether the path is a link, which would be saved in place of what it leads to.
  virtual bool IsLink(std::string_view path) = 0;

  // The machine's path of what the program names: "/D/Documents/x" or a full path.
  [[nodiscard]] virtual std::string MachinePath(std::string_view item) const = 0;

  // The file that the program names by a machine's path, as it is kept: "/D/Documents/x".
  [[nodiscard]] virtual std::string SavedPath(std::string_view path) = 0;

  // A path of the system that lies on one of the machine's drives, as the machine has it. Empty for others.
  virtual std::string MachinePathOfFolder(std::string_view system_path) = 0;

  // What a program needs of this process's environment: where programs, home and temporary files are.
  [[nodiscard]] virtual std::vector<std::string> Environment() const = 0;

  // This computer's name as programs of the system know it.
  [[nodiscard]] virtual std::string HostName() const = 0;
};

// `work_folder` is a folder of the machine, without a backslash at its end, for what the view needs to keep.
// It is made if it is missing. Null if it can't be.
std::unique_ptr<SystemView> MakeSystemView(const Machine& machine, const std::string& work_folder);

}  // namespace ondura::engines
