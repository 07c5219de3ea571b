#pragma once

#include <string_view>

#include "service/ServiceContext.h"

namespace ondura {

// The start of the component in its two hosts: folders, product and a clean state for every user.
class StartUp {
 public:
  explicit StartUp(ServiceContext& context) : context_(context) {}

  // `path` is the install folder. Without a product configuration the rest of the start is left out.
  void cont_InitialSch(std::string_view path);
  void cont_InitialSch_Backgrnd(std::string_view path);

  // Folders and product alone, for a program that looks on while jobs may run. False without a product
  // configuration.
  bool ReadInstallation(std::string_view path);

  // The user has no job running: resets the status key and the header of the schedule file.
  void const_InitUserdata(std::string_view user);

  // Port and flags of the web layer.
  void Cont_login();

 private:
  enum class Reset { kAlways, kUnlessJobIsAlive };

  bool LoadProduct();
  void ResetState(Reset reset);
  void ResetUsers();
  void CapMainTrace();
  void SetUpPlugin();
  void RegisterPlugin64();
  void RegisterPlugin();

  ServiceContext& context_;
};

// A trace file that has grown past this is deleted; the value is deliberately below four mebibytes.
inline constexpr std::uint64_t kTraceCapBytes = 4097152;

}  // namespace ondura
