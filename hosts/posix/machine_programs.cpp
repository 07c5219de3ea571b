#include "machine_programs.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "machines/posix/HostProcess.h"
#include "machines/posix/PathMap.h"
#include "machines/posix/StopSignals.h"
#include "profile/installation_folders.h"
#include "text/text.h"

namespace ondura {

namespace {

namespace fs = std::filesystem;

constexpr const char* kMailHelper = "OndruaEStartup.exe";

// The twin's path as the machine sees it; empty without a product configuration.
std::string TwinPath(const Machine& machine, const HostOptions& options) {
  Installation installation;
  if (!LoadInstallation(machine, installation, options.install)) return {};
  return installation.ExeLocation + installation.BackgroundExe;
}

// A copy that runs already keeps its file: the new one takes only its name.
bool CopyProgram(const fs::path& from, const fs::path& to) {
  const fs::path fresh = to.string() + ".new";
  std::error_code error;
  fs::copy_file(from, fresh, fs::copy_options::overwrite_existing, error);
  if (!error) fs::rename(fresh, to, error);
  if (!error) return true;
  // Half a program on a full disk would keep it full.
  fs::remove(fresh, error);
  return false;
}

}  // namespace

std::string RunFromInsideMachine(const Machine& machine, const HostOptions& options, char** argv) {
  std::error_code error;
  const std::string root = fs::canonical(options.root, error).string();
  const auto executable = ExecutableOf(getpid());
  PathMap paths{root, {}};
  if (error || !executable) return "the running program can't be found on this host";
  if (paths.UnderRoot(*executable)) return {};
  const std::string twin = TwinPath(machine, options);
  if (twin.empty()) return {};
  const std::string target = paths.ForCreation(twin);
  if (target.empty() || !CopyProgram(*executable, target)) {
    return "the twin can't be copied to " + twin + "; check the install folder in the machine's folder";
  }
  HoldStopSignals();
  execv(target.c_str(), argv);
  return "the twin can't be started from " + target;
}

std::string InstallMailHelper(const Machine& machine, const HostOptions& options) {
  const std::string helper = WithBackslash(options.install) + kMailHelper;
  // A missing install folder is left to the start-up to report.
  if (machine.files.Exists(helper) || !machine.folders.Exists(options.install)) return {};
  std::error_code error;
  const std::string root = fs::canonical(options.root, error).string();
  const auto executable = ExecutableOf(getpid());
  if (error || !executable) return "the running program can't be found on this host";
  const fs::path own = fs::path{*executable}.parent_path() / kMailHelper;
  if (!fs::exists(own, error)) return std::string{kMailHelper} + " does not lie beside this program";
  const std::string target = PathMap{root, {}}.ForCreation(helper);
  if (!target.empty() && CopyProgram(own, target)) return {};
  return std::string{kMailHelper} + " can't be copied to " + options.install;
}

}  // namespace ondura
