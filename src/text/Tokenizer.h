#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ondura {

// Gives the parts of a text one after another. An empty part and the end look the same: the empty text.
class Tokenizer {
 public:
  // Starts on a new text, with one blank as the separator.
  void init(std::string_view sText);

  // Splits the text anew and starts again at its first part.
  void setSeparator(std::string_view sSeparator);

  // The next part; the empty text after the last one.
  std::string nextToken();

 private:
  std::string text_;
  std::vector<std::string> parts_;
  std::size_t next_ = 0;
};

}  // namespace ondura
