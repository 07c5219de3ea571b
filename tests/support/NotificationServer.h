#pragma once

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>

namespace ondura {

// A notification endpoint at port 11900 of a loopback address that no other running test has, for as long as
// this object lives.
class NotificationServer {
 public:
  // The options of notification_server.py, such as "--hang". `number` tells the servers of one test apart, up
  // to 3. Throws where it can't be started; it has said why on the error stream.
  explicit NotificationServer(const std::vector<std::string>& options = {}, unsigned number = 0)
      : folder_(MakeFolder()), address_(AddressFor(number)) {
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0) {
      throw std::runtime_error("no pipe");
    }
    const bool started = Start(options, input[0], output[1]);
    close(input[0]);
    close(output[1]);
    life_line_ = input[1];
    std::string said;
    std::array<char, 16> bytes{};
    for (ssize_t count = 0; started && (count = read(output[0], bytes.data(), bytes.size())) > 0;) {
      said.append(bytes.data(), static_cast<std::size_t>(count));
      if (said == "ready\n") break;
    }
    close(output[0]);
    if (said == "ready\n") return;
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

  // An address of its own for each running process and `number`, where nothing listens before a server does.
  static std::string AddressFor(unsigned number) {
    const unsigned own = (static_cast<unsigned>(getpid()) << 2U) | (number & 3U);
    std::ostringstream address;
    address << "127." << ((own >> 16U) & 0xFFU) << '.' << ((own >> 8U) & 0xFFU) << '.' << (own & 0xFFU);
    return address.str();
  }

 private:
  static std::filesystem::path MakeFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "ondura-notification-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return pattern;
  }

  bool Start(const std::vector<std::string>& options, int input, int output) {
    std::vector<std::string> words{"python3", NOTIFICATION_SERVER, folder_.string(), address_};
    words.insert(words.end(), options.begin(), options.end());
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    const int error = posix_spawnp(&process_, "python3", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) process_ = -1;
    return error == 0;
  }

  void Stop() {
    close(life_line_);
    if (process_ > 0) {
      kill(process_, SIGTERM);
      waitpid(process_, nullptr, 0);
    }
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
  int life_line_ = -1;  // its standard input; the system closes it even when this process crashes
  pid_t process_ = -1;
};

}  // namespace ondura
