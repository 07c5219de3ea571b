#pragma once

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

namespace ondura::rehearsal {

// A host as a process of its own; ended with the test at the latest.
class HostProcess {
 public:
  HostProcess(const std::string& root, const char* role, const char* ticks) {
    id_ = fork();
    if (id_ != 0) return;
    execl(ONDURA_HOST, ONDURA_HOST, role, "--root", root.c_str(), "--speed", "60", "--period", "3", "--ticks",
          ticks, nullptr);
    _exit(127);
  }
  ~HostProcess() {
    if (id_ > 0) End(SIGKILL);
  }
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;

  // The exit code; -1 for a host that has not left by itself within a minute.
  int Finish() {
    for (int look = 0; look < 1200; ++look) {
      int status = 0;
      if (waitpid(id_, &status, WNOHANG) == id_) {
        id_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      }
      std::this_thread::sleep_for(std::chrono::milliseconds{50});
    }
    return -1;
  }

  int Stop() { return End(SIGTERM); }

 private:
  int End(int signal) {
    kill(id_, signal);
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  pid_t id_ = 0;
};

}  // namespace ondura::rehearsal
