#pragma once

#include <gmock/gmock.h>

#include <string>

namespace ondura::testing {

// The text as one argument.
std::string Quoted(const std::string& text);

struct ToolResult {
  int exit = -1;
  std::string out;
  std::string err;
};

// A machine folder of its own, on which the built program is run as a person would.
class ToolHouse {
 public:
  ToolHouse();
  ~ToolHouse();
  ToolHouse(const ToolHouse&) = delete;
  ToolHouse& operator=(const ToolHouse&) = delete;

  // Runs the program on this folder, with the arguments as a shell takes them.
  ToolResult Run(const std::string& arguments, const std::string& input = {}) const;

  // The same without naming the folder.
  static ToolResult RunBare(const std::string& arguments, const std::string& input = {});

  // Files by their path under the folder, such as "C/ProgramData/Ondura/userlist.ini". Empty when missing.
  [[nodiscard]] std::string Bytes(const std::string& path) const;
  void Put(const std::string& path, const std::string& bytes) const;

  // A file of ann's folder.
  [[nodiscard]] std::string OfAnn(const std::string& name) const { return Bytes(kAnn + name); }
  void PutForAnn(const std::string& name, const std::string& bytes) const { Put(kAnn + name, bytes); }

  [[nodiscard]] const std::string& root() const { return root_; }

  static constexpr const char* kData = "C/ProgramData/Ondura/";

 private:
  inline static const std::string kAnn = "C/ProgramData/Ondura/Onduraann/";

  std::string root_;
};

// One with the user ann (password "secret"), and a drive D with a file and a folder.
struct AnnHouse : ToolHouse {
  AnnHouse();

  // Runs the commands of the same names for her.
  ToolResult Get(const std::string& key) const { return Run("get ann " + Quoted(key)); }
  ToolResult Set(const std::string& key, const std::string& value) const {
    return Run("set ann " + Quoted(key) + " " + Quoted(value));
  }
};

}  // namespace ondura::testing
