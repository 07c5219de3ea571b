#pragma once

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace ondura {

// A notification endpoint at port 11900 of a loopback address that no other running test has, for as long as
// this object lives.
class NotificationServer {
 public:
  // The options of notification_server.py, such as "--hang". `number` tells the servers of one test apart, up
  // to 3. Throws where it can't be started; it has said why on the error stream.
  explicit NotificationServer(const std::vector<std::string>& options = {}, unsigned number = 0)
      : folder_(MakeFolder()), address_(AddressFor(number)) {
    std::string command = "exec python3 '" NOTIFICATION_SERVER "' '" + folder_.string() + "' " + address_;
    for (const std::string& option : options) command += " " + option;
    // It ends with its standard input, which the system closes even when this process crashes.
    life_line_ = popen((command + " >/dev/null").c_str(), "we");
    for (int look = 0; life_line_ != nullptr && look < 2000; ++look) {
      if (std::filesystem::exists(folder_ / "ready")) return;
      std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    Stop();
    throw std::runtime_error("notification_server.py did not start");
  }

  ~NotificationServer() { Stop(); }
  NotificationServer(const NotificationServer&) = delete;
  NotificationServer& operator=(const NotificationServer&) = delete;

  // The host that the server's certificate is for.
  [[nodiscard]] const std::string& address() const { return address_; }

  // The certificate of its authority, in PEM form.
  [[nodiscard]] std::string Authority() const { return BytesOf("authority.pem"); }
  [[nodiscard]] std::string AuthorityFile() const { return (folder_ / "authority.pem").string(); }

  // The requests so far, each with its head as it came.
  [[nodiscard]] std::vector<std::string> Posts() const {
    std::vector<std::string> posts;
    while (true) {
      const std::string name = "post-" + std::to_string(posts.size() + 1) + ".txt";
      if (!std::filesystem::exists(folder_ / name)) return posts;
      posts.push_back(BytesOf(name));
    }
  }

 private:
  static std::filesystem::path MakeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ondura-notification-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return pattern;
  }

  // An address of its own for each running process and `number`.
  static std::string AddressFor(unsigned number) {
    const unsigned own = (static_cast<unsigned>(getpid()) << 2U) | (number & 3U);
    std::ostringstream address;
    address << "127." << ((own >> 16U) & 0xFFU) << '.' << ((own >> 8U) & 0xFFU) << '.' << (own & 0xFFU);
    return address.str();
  }

  void Stop() {
    if (life_line_ != nullptr) pclose(life_line_);
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  [[nodiscard]] std::string BytesOf(const std::string& name) const {
    std::ostringstream bytes;
    bytes << std::ifstream{folder_ / name, std::ios::binary}.rdbuf();
    return bytes.str();
  }

  std::filesystem::path folder_;
  std::string address_;
  std::FILE* life_line_ = nullptr;
};

}  // namespace ondura
