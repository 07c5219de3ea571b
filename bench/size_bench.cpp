#include "bench/size_bench.h"

#include <stdexcept>
#include <string>
#include <vector>

#include "backupset/SizeCalculation.h"
#include "bench/BenchMachine.h"
#include "bench/TableReporter.h"
#include "bench/child.h"
#include "bench/statistics.h"
#include "platform/forwarding.h"
#include "reporting/Options.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr const char* kTree = "C:\\Tree";
constexpr int kRounds = 9;
constexpr double kRatioTarget = 1.5;
constexpr std::size_t kFoldersInADepartment = 100;
constexpr std::size_t kDepartments = 100;

// Adds up the pauses instead of making them.
class PauseCounter : public ForwardingClock {
 public:
  using ForwardingClock::ForwardingClock;

  void Sleep(std::chrono::milliseconds duration) override { waited_ += duration; }

  [[nodiscard]] std::chrono::milliseconds waited() const { return waited_; }

 private:
  std::chrono::milliseconds waited_{0};
};

// Numbers of five digits, as the generated folders have them.
std::string Numbered(const std::string& word, std::size_t number) {
  const std::string digits = std::to_string(number);
  return word + " " + std::string(5 - digits.size(), '0') + digits;
}

// One folder of each department, and every tenth department.
std::string ExcludedFolders() {
  std::string list;
  for (std::size_t department = 0; department < kDepartments; ++department) {
    const std::size_t first = department * kFoldersInADepartment;
    list += std::string{kTree} + "\\" + Numbered("department", first);
    if (department % 10 != 0) list += "\\" + Numbered("project", first + 1);
    list += kLineEnd;
  }
  return list;
}

// What is in the tree but in no excluded folder, by a walk of the host's own: the text of
// TotalDisplaySize.txt.
std::string TotalsByHost(const std::filesystem::path& root) {
  const auto tree = root / "C" / "Tree";
  const std::string excluded = ReplaceAll(ExcludedFolders(), "\\", "/");
  double size_bytes = 0;
  double files = 0;
  for (std::filesystem::recursive_directory_iterator at{tree}, end; at != end; ++at) {
    if (at->is_directory()) {
      std::string folder = "C:/Tree/" + at->path().lexically_relative(tree).string();
      if (excluded.find(folder.append(kLineEnd)) != std::string::npos) at.disable_recursion_pending();
    } else {
      size_bytes += static_cast<double>(at->file_size());
      ++files;
    }
  }
  return NumberText(size_bytes).append(kLineEnd).append(NumberText(files)).append(kLineEnd);
}

void PutLists(const std::filesystem::path& root) {
  const BenchMachine bench{root};
  TextFiles files{bench.machine().files, bench.machine().code_page};
  files.Write(bench.installation().UserFile("atbkupfolderlist.txt"), kTree, Encoding::kUtf16);
  files.Write(bench.installation().UserFile("atbkupExcludelist.txt"), ExcludedFolders(), Encoding::kUtf16);
}

std::string Totals(const std::filesystem::path& root) {
  const BenchMachine bench{root};
  TextFiles files{bench.machine().files, bench.machine().code_page};
  return files.Read(bench.installation().UserFile("TotalDisplaySize.txt"), Encoding::kUtf16).value_or("");
}

// Returns the pauses that it would have made.
std::chrono::milliseconds Calculate(const std::filesystem::path& root) {
  const BenchMachine bench{root};
  PauseCounter clock{bench.machine().clock};
  const Machine machine = With(bench.machine(), clock);
  const bool stop_flag = false;
  StatusStopCheck stop{machine, bench.installation(), stop_flag};
  SizeCalculation calculation{machine, bench.installation(), stop};
  if (calculation.CalculateTotalSize({}) == SizeOutcome::kStopped) throw std::runtime_error{"stopped"};
  return clock.waited();
}

void BesideDu(benchmark::State& state, const std::filesystem::path& root) {
  PutLists(root);
  const std::vector<std::string> du{"du", "-sb", (root / "C" / "Tree").string()};
  const auto by_du = [&] { RunChild(du); };
  const auto by_us = [&] { Calculate(root); };
  by_du();  // fills the host's caches for both
  by_us();
  if (Totals(root) != TotalsByHost(root)) return state.SkipWithError("the totals are wrong");
  std::vector<double> ratios;
  bool du_first = true;
  for (auto round : state) {
    (void)round;
    double du_seconds = 0;
    if (du_first) du_seconds = SecondsOf(by_du);
    const double our_seconds = SecondsOf(by_us);
    if (!du_first) du_seconds = SecondsOf(by_du);
    du_first = !du_first;
    ratios.push_back(our_seconds / du_seconds);
    state.SetIterationTime(our_seconds);
  }
  state.SetLabel("x du");
  TellValue(state, Median(ratios));
  TellTarget(state, kRatioTarget);
}

void Pauses(benchmark::State& state, const std::filesystem::path& root) {
  PutLists(root);
  std::chrono::milliseconds waited{0};
  for (auto round : state) {
    (void)round;
    waited = Calculate(root);
  }
  state.SetLabel("s");
  TellValue(state, std::chrono::duration<double>(waited).count());
}

}  // namespace

void RegisterSizeCalculation(const std::filesystem::path& root) {
  benchmark::RegisterBenchmark("size calculation, time of du -sb",
                               [root](auto& state) { BesideDu(state, root); })
      ->Iterations(kRounds)
      ->UseManualTime();
  benchmark::RegisterBenchmark("size calculation, its pauses besides", [root](auto& state) {
    Pauses(state, root);
  })->Iterations(1);
}

}  // namespace ondura
