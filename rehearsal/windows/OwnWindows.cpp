#include "rehearsal/common/OwnWindows.h"

#include <windows.h>

#include <string>

namespace ondura::rehearsal {

namespace {

// The system's own class of dialog windows.
constexpr const char* kDialogClass = "#32770";
constexpr int kWidth = 320;
constexpr int kHeight = 120;

class Dialogs : public OwnWindows {
 public:
  explicit Dialogs(const std::vector<std::string_view>& titles) {
    for (const std::string_view title : titles) {
      windows_.push_back(CreateWindowExA(0, kDialogClass, std::string{title}.c_str(),
                                         WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, kWidth, kHeight, nullptr,
                                         nullptr, GetModuleHandleA(nullptr), nullptr));
    }
  }
  ~Dialogs() override {
    for (HWND window : windows_) {
      if (window != nullptr) DestroyWindow(window);
    }
  }
  Dialogs(const Dialogs&) = delete;
  Dialogs& operator=(const Dialogs&) = delete;

  void Pump() override {
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
  }

 private:
  std::vector<HWND> windows_;
};

}  // namespace

std::unique_ptr<OwnWindows> ShowDialogs(const std::vector<std::string_view>& titles) {
  return std::make_unique<Dialogs>(titles);
}

}  // namespace ondura::rehearsal
