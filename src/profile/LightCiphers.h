#pragma once

#include <string>
#include <string_view>

#include "platform/CodePage.h"
#include "platform/MessagePump.h"

namespace ondura {

// The forms that keep stored values from being read at a glance. They work on the characters of the system
// code page; texts are UTF-8 on both sides. The empty text stays empty.
class LightCiphers {
 public:
  LightCiphers(CodePage& code_page, MessagePump& pump) : code_page_(code_page), pump_(pump) {}

  // Every character code plus 2. A character of code 254 or 255 has no such form: the result of the
  // character before it is repeated.
  [[nodiscard]] std::string ShiftEncode(std::string_view sText) const;

  // The same, for the engine's input file.
  [[nodiscard]] std::string ShiftEncodePlain(std::string_view sText) const;

  // Every character code less 2, with a turn of the message pump after each character. Empty when a
  // character's code is below 2.
  [[nodiscard]] std::string ShiftDecode(std::string_view sText) const;

  // Every character followed by the one of the next code; code 255 has none and comes twice.
  [[nodiscard]] std::string PairEncode(std::string_view sText) const;

  // The first character of every pair, its code less 2: the clear text of a shifted and paired one. Empty
  // when such a code is below 2.
  [[nodiscard]] std::string PairDecode(std::string_view sText) const;

 private:
  CodePage& code_page_;
  MessagePump& pump_;
};

}  // namespace ondura
