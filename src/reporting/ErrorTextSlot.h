#pragma once

#include <string>
#include <string_view>

namespace ondura {

// The sentence of the last failure, as the web layer and the stages leave it for the user interface.
class ErrorTextSlot {
 public:
  // Empty until something has failed.
  [[nodiscard]] const std::string& ErrorText() const { return ErrorText_; }

  void dav_seterrorstring(std::string_view strDescrip) { ErrorText_ = strDescrip; }

 private:
  std::string ErrorText_;
};

}  // namespace ondura
