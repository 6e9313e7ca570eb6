// Numbers, characters and texts from the input of a fuzz target.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "document/text.h"

namespace tolvane::fuzz {

/// Takes an input apart: numbers byte by byte, texts up to a newline.
class Reader {
 public:
  explicit Reader(std::string_view input) : input_(input) {}

  [[nodiscard]] bool empty() const { return input_.empty(); }

  unsigned number() {
    const unsigned number = empty() ? 0 : static_cast<unsigned char>(input_.front());
    input_.remove_prefix(empty() ? 0 : 1);
    return number;
  }

  /// Any character but NUL.
  char character() {
    const unsigned character = number();
    return character == 0 ? ',' : static_cast<char>(character);
  }

  /// At most 511 characters, so that it is a text that a line may hold.
  std::string text() {
    const std::size_t end = std::min(input_.find('\n'), input_.size());
    std::string text{input_.substr(0, end)};
    input_.remove_prefix(std::min(end + 1, input_.size()));
    text.resize(std::min({text.find('\0'), text.size(), Text::maximum}));
    return text;
  }

 private:
  std::string_view input_;
};

}  // namespace tolvane::fuzz
