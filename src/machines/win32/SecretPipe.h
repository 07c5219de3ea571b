#pragma once

#include <string>

#include "machines/win32/handles.h"

namespace ondura {

// A named pipe from which one program of this account reads a text once. Nobody waits for the reader: the
// owner looks now and then.
class SecretPipe {
 public:
  explicit SecretPipe(std::string text);
  ~SecretPipe();
  SecretPipe(const SecretPipe&) = delete;
  SecretPipe& operator=(const SecretPipe&) = delete;

  // What the program opens. Empty if there is no pipe.
  [[nodiscard]] const std::string& path() const { return path_; }

  // Hands the text to a reader that has come, and closes the pipe after it.
  void Serve();

 private:
  enum class Step { kConnecting, kWriting };

  void Connect();
  void Write();

  std::string path_;
  std::string text_;
  UniqueHandle event_;
  OVERLAPPED progress_{};
  UniqueHandle pipe_;
  Step step_ = Step::kConnecting;
};

}  // namespace ondura
