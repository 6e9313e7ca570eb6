// The one bounded text type: every line of the file and every value that is worked on.
//
// A Text holds 0 to 511 characters and the NUL behind them, in 512 bytes and nothing else. Whatever would make it
// longer throws TextTooLong and leaves the text as it was, or as far as it was composed. Any byte but NUL may stand in
// it; a NUL byte in what is written ends the text there.
#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstring>
#include <string_view>

#include "document/ends.h"

namespace tolvane {

class Text {
 public:
  /// The most characters that a text holds.
  static constexpr std::size_t maximum = 511;

  Text() noexcept { characters_[0] = '\0'; }
  Text(const Text& other) noexcept { copy(other); }
  Text& operator=(const Text& other) noexcept {
    if (this != &other) copy(other);
    return *this;
  }
  ~Text() = default;

  /// Composes the parts (texts, characters, integers in decimal) one behind the other.
  template <typename... Parts>
  explicit Text(const Parts&... parts) : Text() {
    std::size_t length = 0;
    ((length = put(length, parts)), ...);
  }

  /// Becomes the parts one behind the other. A part may be a piece of this very text.
  template <typename... Parts>
  void set(const Parts&... parts) {
    *this = Text(parts...);
  }

  template <typename Part>
  void append(const Part& part) {
    put(length(), part);
  }

  [[nodiscard]] bool empty() const { return characters_[0] == '\0'; }
  /// The first character, NUL when the text is empty.
  [[nodiscard]] char first() const { return characters_[0]; }
  [[nodiscard]] std::size_t length() const { return std::strlen(characters_); }
  [[nodiscard]] const char* c_str() const { return characters_; }
  /// The characters in place: good as long as the text is not written.
  [[nodiscard]] std::string_view view() const { return characters_; }
  operator std::string_view() const { return view(); }  // NOLINT(google-explicit-constructor): a text is its characters

  friend bool operator==(const Text& text, const Text& other) { return text.view() == other.view(); }
  friend bool operator==(const Text& text, std::string_view other) {
    // The first character tells most texts apart, so that few are measured.
    return text.first() == (other.empty() ? '\0' : other.front()) && text.view() == other;
  }

 private:
  /// Writes a part behind so many characters. How many there are then.
  std::size_t put(std::size_t length, std::string_view text) {
    if (text.size() > maximum - length) throw TextTooLong{};
    // An empty view may hold no pointer at all.
    if (!text.empty()) std::memmove(&characters_[length], text.data(), text.size());
    characters_[length + text.size()] = '\0';
    return length + text.size();
  }
  std::size_t put(std::size_t length, char character) { return put(length, std::string_view(&character, 1)); }
  template <std::integral Integer>
  std::size_t put(std::size_t length, Integer integer) {
    std::array<char, 20> digits{};  // the longest is -9223372036854775808
    const auto end = std::to_chars(digits.begin(), digits.end(), integer).ptr;
    return put(length, std::string_view(digits.begin(), end));
  }

  void copy(const Text& other) noexcept { std::memcpy(characters_, other.characters_, other.length() + 1); }

  char characters_[maximum + 1];
};

static_assert(sizeof(Text) == 512);

}  // namespace tolvane
