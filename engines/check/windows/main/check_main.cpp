// The kit that says whether an engine does all that the component expects.

#include <algorithm>
#include <iostream>

#include "engines/check/check_options.h"
#include "engines/common/HostProcess.h"

namespace {

constexpr const char* kFooter =
    R"(It works in C:\OnduraEngineCheck, which it makes and removes. The engine finds its own programs in PATH.

Example: ondura-engine-check restic-engine.exe
Exit codes: 0 all passed, 1 one has failed, 2 bad options.)";

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"Says whether an engine does all that the component expects.", "ondura-engine-check"};
  app.footer(kFooter);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  ondura::check::CheckRequest request;
  ondura::check::AddCheckOptions(app, request);
  std::vector<std::string> words = ondura::engines::ParameterWords(argc, argv);
  std::ranges::reverse(words);
  try {
    app.parse(std::move(words));
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : 2;
  }
  const ondura::check::CheckEnd end = ondura::check::RunChecks(request);
  if (end.exit_code != 0) std::cerr << "ondura-engine-check: " << end.message << "\n";
  return end.exit_code;
}
