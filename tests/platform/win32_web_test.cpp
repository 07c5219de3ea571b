#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <vector>

#include "TemporaryFolder.h"
#include "contract_web.h"
#include "machines/win32/Win32Machine.h"
#include "support/TrustedAuthority.h"
#include "text/text.h"

namespace ondura {

namespace {

std::string BytesOf(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream{path, std::ios::binary}.rdbuf();
  return bytes.str();
}

// The servers that run on the other side of Wine.
class Win32Web : public TestedWeb {
 public:
  explicit Win32Web(const std::string& table) {
    for (const std::string& line : Split(table, "\n")) {
      const auto fields = Split(line, ";");
      if (fields.size() != 3) continue;
      servers_[fields[0]] = {fields[1], fields[2]};
      trusted_.push_back(std::make_unique<TrustedAuthority>(BytesOf(fields[2] + R"(\authority.pem)")));
    }
  }

  WebRequests& web() override { return owner_->machine().web; }
  std::string HostOf(std::string_view options) override { return servers_.at(std::string{options}).address; }

  std::string NewestPost(std::string_view options) override {
    std::string newest;
    for (int number = 1;; ++number) {
      const std::string file = R"(\post-)" + std::to_string(number) + ".txt";
      std::string bytes = BytesOf(servers_.at(std::string{options}).folder + file);
      if (bytes.empty()) return newest;
      newest = std::move(bytes);
    }
  }

  // Wine stops at the missing issuer's list of revoked certificates, and takes a late answer for an end.
  [[nodiscard]] std::uint32_t Known(std::uint32_t error) const override {
    if (error == kInternetInvalidAuthority) return kRevocationUnknown;
    return error == kInternetTimeout ? kInternetConnectionAborted : error;
  }

 private:
  static constexpr std::uint32_t kRevocationUnknown = 12057;

  struct Server {
    std::string address;
    std::string folder;
  };

  std::map<std::string, Server> servers_;
  std::vector<std::unique_ptr<TrustedAuthority>> trusted_;
  std::unique_ptr<Win32Machine> owner_ = MakeWin32Machine();
};

std::unique_ptr<TestedWeb> MakeWin32Web() {
  const char* const table = std::getenv("ONDURA_TEST_SERVERS");
  return std::make_unique<Win32Web>(BytesOf(table == nullptr ? "" : table));
}

// None where the servers were not started around this program, and on Windows itself, where somebody has to
// agree to each authority.
std::vector<MakeTestedWeb> Backends() {
  if (std::getenv("ONDURA_TEST_SERVERS") == nullptr || !IsWine()) return {};
  return {&MakeWin32Web};
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WebContract);
INSTANTIATE_TEST_SUITE_P(Win32, WebContract, testing::ValuesIn(Backends()));

}  // namespace

}  // namespace ondura
