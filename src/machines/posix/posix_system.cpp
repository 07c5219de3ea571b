#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "machines/portable/inet_address.h"
#include "machines/posix/ports.h"
#include "machines/posix/spawn.h"
#include "text/text.h"

namespace ondura {

namespace {

class PosixSystemInfo : public SystemInfo {
 public:
  explicit PosixSystemInfo(const MachineSettings& settings) : settings_(settings) {}
  SystemVersion Version() override { return settings_.version; }
  bool IsWow64() override { return settings_.is_wow64; }
  bool Is64Bit() override { return settings_.is_64_bit || settings_.is_wow64; }
  std::string ComputerName() override { return settings_.computer_name; }

 private:
  const MachineSettings& settings_;
};

class PosixLocaleInfo : public LocaleInfo {
 public:
  explicit PosixLocaleInfo(const MachineSettings& settings) : settings_(settings) {}

  std::string Text(int kind) override {
    switch (kind) {
      case kLocaleShortDate:
        return settings_.short_date;
      case kLocaleTimeFormat:
        return settings_.time_format;
      case kLocaleDecimal:
        return settings_.decimal;
      default:
        return {};
    }
  }

 private:
  const MachineSettings& settings_;
};

class PosixInternet : public Internet {
 public:
  explicit PosixInternet(const MachineSettings& settings) : settings_(settings) {}
  ConnectedState ExtendedState() override { return settings_.connection; }
  bool IsConnected() override { return settings_.connection.connected; }

 private:
  const MachineSettings& settings_;
};

class PosixServices : public Services {
 public:
  explicit PosixServices(const MachineSettings& settings) : settings_(settings) {}

  int State(std::string_view service_name, ServiceManagerAccess /*access*/) override {
    const auto found = settings_.services.find(ToLower(service_name));
    return found == settings_.services.end() ? 0 : found->second;
  }

 private:
  const MachineSettings& settings_;
};

// Nobody sits in front of a machine in a folder; what it would show goes to the host's error stream.
class PosixDesktop : public Desktop {
 public:
  void ShowMessage(std::string_view text, std::string_view title, MessageIcon icon) override {
    const std::string line = std::string{icon == MessageIcon::kStop ? "[stop] " : ""} + std::string{title} +
                             ": " + std::string{text} + "\n";
    std::fputs(line.c_str(), stderr);
  }

  ProcessId ProcessOfWindow(WindowHandle /*window*/) override { return 0; }
  WindowHandle FindTopWindow(std::string_view /*window_class*/, std::string_view /*title*/) override {
    return 0;
  }
  bool Show(WindowHandle /*window*/, WindowShow /*how*/) override { return false; }
  bool Post(WindowHandle /*window*/, std::uint32_t /*message*/) override { return false; }
};

class PosixPower : public Power {
 public:
  explicit PosixPower(const MachineSettings& settings) : settings_(settings) {}

  bool ExitWindows(std::uint32_t flags) override {
    const std::string asked = "The machine is asked to end (flags " + std::to_string(flags) + "): ";
    if (settings_.exit_command.empty()) {
      std::fputs((asked + "machine.ini has no ExitCommand in [System], so it stays up.\n").c_str(), stderr);
      return false;
    }
    std::fputs((asked + settings_.exit_command + "\n").c_str(), stderr);
    return RunShellCommand(settings_.exit_command);
  }

 private:
  const MachineSettings& settings_;
};

class PosixNameResolution : public NameResolution {
 public:
  NameLookup AddressOf(std::string_view host_name) override {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* first = nullptr;
    const std::string name{host_name};
    if (name.empty() || getaddrinfo(name.c_str(), nullptr, &hints, &first) != 0) {
      return {true, std::nullopt, true};
    }
    sockaddr_in address{};
    std::memcpy(&address, first->ai_addr, sizeof address);
    freeaddrinfo(first);
    std::array<char, INET_ADDRSTRLEN> text{};
    inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
    return {true, std::string{text.data()}, true};
  }

  NameLookup NameOf(std::string_view address) override {
    const auto number = InetAddress(address);
    sockaddr_in socket_address{};
    socket_address.sin_family = AF_INET;
    socket_address.sin_addr.s_addr = htonl(number.value_or(0));
    std::array<char, NI_MAXHOST> name{};
    const bool found =
        number && getnameinfo(reinterpret_cast<const sockaddr*>(&socket_address), sizeof socket_address,
                              name.data(), name.size(), nullptr, 0, NI_NAMEREQD) == 0;
    return {true, found ? std::optional{std::string{name.data()}} : std::nullopt, true, number.has_value()};
  }
};

// Continuous backup is not installed on such a machine.
class PosixContinuousBackup : public ContinuousBackup {
 public:
  void PostCDPStatusMsg(ContinuousBackupState /*state*/) override {}
  void ValidateLocalDBDllVersion() override {}
};

}  // namespace

std::unique_ptr<SystemInfo> MakePosixSystemInfo(const MachineSettings& settings) {
  return std::make_unique<PosixSystemInfo>(settings);
}

std::unique_ptr<LocaleInfo> MakePosixLocaleInfo(const MachineSettings& settings) {
  return std::make_unique<PosixLocaleInfo>(settings);
}

std::unique_ptr<Internet> MakePosixInternet(const MachineSettings& settings) {
  return std::make_unique<PosixInternet>(settings);
}

std::unique_ptr<Services> MakePosixServices(const MachineSettings& settings) {
  return std::make_unique<PosixServices>(settings);
}

std::unique_ptr<Desktop> MakePosixDesktop() { return std::make_unique<PosixDesktop>(); }

std::unique_ptr<Power> MakePosixPower(const MachineSettings& settings) {
  return std::make_unique<PosixPower>(settings);
}

std::unique_ptr<NameResolution> MakePosixNameResolution() { return std::make_unique<PosixNameResolution>(); }

std::unique_ptr<ContinuousBackup> MakePosixContinuousBackup() {
  return std::make_unique<PosixContinuousBackup>();
}

}  // namespace ondura
