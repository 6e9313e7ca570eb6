#include "document/visible.h"

#include <algorithm>
#include <array>

namespace tolvane {

namespace {

unsigned byte(char character) { return static_cast<unsigned char>(character); }

/// A lead byte's range, what follows it, and the least character that may be written so.
struct Form {
  unsigned first, last;
  std::size_t length;
  std::uint32_t least;
};

constexpr Form forms[] = {
    {0x00, 0x7f, 1, 0      },
    {0xc2, 0xdf, 2, 0x80   },
    {0xe0, 0xef, 3, 0x800  },
    {0xf0, 0xf4, 4, 0x10000},
};

bool continues(char character) { return (byte(character) & 0xc0U) == 0x80; }

bool valid(std::string_view bytes, const Form& form) {
  if (bytes.size() < form.length || !std::all_of(bytes.begin() + 1, bytes.end(), continues)) return false;
  const std::uint32_t character = decoded(bytes);
  return character >= form.least && character <= 0x10ffff && (character < 0xd800 || character > 0xdfff);
}

std::string escaped(std::string_view bytes) {
  if (bytes == "\t") return "\\t";
  if (bytes == "\n") return "\\n";
  if (bytes == "\r") return "\\r";
  std::string text;
  for (const char character : bytes) text += "\\x" + hexadecimal(byte(character), 2);
  return text;
}

}  // namespace

std::size_t utf8length(std::string_view text) {
  for (const Form& form : forms) {
    if (byte(text[0]) < form.first || byte(text[0]) > form.last) continue;
    return valid(text.substr(0, form.length), form) ? form.length : 0;
  }
  return 0;
}

std::uint32_t decoded(std::string_view bytes) {
  constexpr std::array<unsigned, 5> leadbits{0, 0x7f, 0x1f, 0x0f, 0x07};
  std::uint32_t character = byte(bytes[0]) & leadbits.at(bytes.size());
  for (const char next : bytes.substr(1)) character = character << 6U | (byte(next) & 0x3fU);
  return character;
}

bool iscontrol(std::uint32_t character) {
  const bool control = character < 0x20 || (character >= 0x7f && character < 0xa0);
  const bool direction = character == 0x61c || character == 0x200e || character == 0x200f ||
                         (character >= 0x2028 && character <= 0x202e) || (character >= 0x2066 && character <= 0x2069);
  return control || direction;
}

std::string hexadecimal(unsigned value, int width) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text(static_cast<std::size_t>(width), '0');
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value /= 16) *digit = digits[value % 16];
  return text;
}

std::string visible(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = utf8length(text);
    const std::string_view bytes = text.substr(0, std::max<std::size_t>(length, 1));
    if (length == 0 || iscontrol(decoded(bytes))) {
      result += escaped(bytes);
    } else {
      result += bytes;
    }
    text.remove_prefix(bytes.size());
  }
  return result;
}

}  // namespace tolvane
