// The lines of documents by number, so that states of a document are compared without looking at texts again.
#pragma once

#include <cstdint>
#include <cstring>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "document/text.h"

namespace tolvane {

std::uint32_t hashof(std::string_view text);

/// Numbers lines, equal ones alike. Two lines are equal if their texts and the headers of their sections are.
class Vocabulary {
 public:
  /// Number of the empty text, and the section of the lines before the first header.
  static constexpr std::uint32_t nosection = 0;

  Vocabulary();
  ~Vocabulary() = default;
  // No copies: the texts point into the copied ones.
  Vocabulary(const Vocabulary&) = delete;
  Vocabulary& operator=(const Vocabulary&) = delete;
  Vocabulary(Vocabulary&&) = default;
  Vocabulary& operator=(Vocabulary&&) = default;

  /// Returns the number of a line below the section header of that number. A header is its own section. Copies a text
  /// that is new.
  std::uint32_t number(std::string_view text, std::uint32_t section);

  /// Does the same for a text that outlives this object, which is not copied.
  std::uint32_t lent(std::string_view text, std::uint32_t section);

  /// Returns the number of a line that is known; the number of the empty text for any other one.
  [[nodiscard]] std::uint32_t known(std::string_view text, std::uint32_t section) const;

  /// Returns true if the line has that number.
  [[nodiscard]] bool is(std::uint32_t number, const Text& text, std::uint32_t section) const {
    const Known& known = lines_[number];
    const bool header = known.section == number && number != nosection;
    if (known.section != section && !header) return false;
    return std::memcmp(text.c_str(), known.text, known.length) == 0 && text.c_str()[known.length] == '\0';
  }

  [[nodiscard]] std::string_view text(std::uint32_t number) const {
    return {lines_[number].text, lines_[number].length};
  }

  /// Number of the header of the line's section.
  [[nodiscard]] std::uint32_t section(std::uint32_t number) const { return lines_[number].section; }

  /// Hash of the text alone.
  [[nodiscard]] std::uint32_t hash(std::uint32_t number) const { return lines_[number].hash; }

  /// Makes room for more lines.
  void reserve(std::size_t more);

  /// Every number is smaller than the size.
  [[nodiscard]] std::size_t size() const { return lines_.size(); }

 private:
  struct Known {
    const char* text;
    std::uint32_t length;
    std::uint32_t section;
    std::uint32_t hash;  // of the text
  };

  [[nodiscard]] std::size_t slot(std::string_view text, std::uint32_t section, std::uint32_t hash) const;
  std::uint32_t add(std::string_view text, std::uint32_t section, std::uint32_t hash);
  std::string_view copied(std::string_view text);
  void grow(std::size_t size);

  std::vector<Known> lines_;
  std::vector<std::uint32_t> slots_;  // the numbers by hash, each one more; 0 for a free slot
  std::deque<std::string> copies_;    // texts in large pieces
};

}  // namespace tolvane
