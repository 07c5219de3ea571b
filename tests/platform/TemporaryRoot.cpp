#include "TemporaryRoot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "contract.h"

namespace ondura {

namespace {

class PosixUnderTest : public TestedMachine {
 public:
  const Machine& machine() override { return first_.owner->machine(); }
  const Machine& other() override { return second_.owner->machine(); }

  LaunchRequest PutProgram(std::string_view path, std::chrono::milliseconds lifetime,
                           int exit_code) override {
    root_.PutPerl(path);
    std::ostringstream script;
    script << "select undef, undef, undef, " << static_cast<double>(lifetime.count()) / 1000 << "; exit "
           << exit_code;
    return TemporaryRoot::PerlRequest(path, script.str());
  }
  bool PutFolderLink(std::string_view path, std::string_view folder) override {
    std::filesystem::create_directory_symlink(root_.OnHost(folder), root_.OnHost(path));
    return true;
  }
  [[nodiscard]] std::size_t long_path() const override { return 5000; }
  void Protect(std::string_view path) override {
    std::filesystem::permissions(root_.OnHost(path), std::filesystem::perms::owner_read);
  }

 private:
  TemporaryRoot root_;
  PosixMachineResult first_ = root_.Make();
  PosixMachineResult second_ = root_.Make();
};

std::unique_ptr<TestedMachine> MakePosixUnderTest() { return std::make_unique<PosixUnderTest>(); }

}  // namespace

TemporaryRoot::TemporaryRoot() {
  std::string pattern = (std::filesystem::temp_directory_path() / "ondura-test-XXXXXX").string();
  path_ = std::filesystem::canonical(mkdtemp(pattern.data()));
  std::filesystem::create_directory(path_ / "C");
}

TemporaryRoot::~TemporaryRoot() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void TemporaryRoot::Put(std::string_view name, std::string_view bytes) const {
  const auto file = path_ / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream{file, std::ios::binary} << bytes;
}

std::string TemporaryRoot::Bytes(std::string_view name) const {
  std::ostringstream bytes;
  bytes << std::ifstream{path_ / name, std::ios::binary}.rdbuf();
  return bytes.str();
}

PosixMachineResult TemporaryRoot::Make(int speed) const { return MakePosixMachine({path_, speed, {}}); }

std::filesystem::path TemporaryRoot::OnHost(std::string_view path) const {
  std::string host = "C/" + std::string{path.substr(3)};
  std::ranges::replace(host, '\\', '/');
  return path_ / host;
}

void TemporaryRoot::PutPerl(std::string_view path) const {
  std::filesystem::copy_file("/usr/bin/perl", OnHost(path));
}

LaunchRequest TemporaryRoot::PerlRequest(std::string_view path, std::string_view script) {
  return {std::string{path}, "-e \"" + std::string{script} + "\"", "C:", 0, "open"};
}

INSTANTIATE_TEST_SUITE_P(Posix, PlatformContract, testing::Values(&MakePosixUnderTest));

}  // namespace ondura
