#include "text/Tokenizer.h"

#include "text/text.h"

namespace ondura {

void Tokenizer::init(std::string_view sText) {
  text_ = sText;
  setSeparator(" ");
}

void Tokenizer::setSeparator(std::string_view sSeparator) {
  parts_ = Split(text_, sSeparator);
  next_ = 0;
}

std::string Tokenizer::nextToken() { return next_ < parts_.size() ? parts_[next_++] : std::string{}; }

}  // namespace ondura
