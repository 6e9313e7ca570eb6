#include "preview/escape.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace tolvane {

namespace {

constexpr std::string_view digits = "0123456789abcdef";

unsigned byte(char character) { return static_cast<unsigned char>(character); }

std::string hexadecimal(unsigned value, int width) {
  std::string text(static_cast<std::size_t>(width), '0');
  for (auto digit = text.rbegin(); digit != text.rend(); ++digit, value /= 16) *digit = digits[value % 16];
  return text;
}

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

/// The character that the bytes stand for; they are as many as its form has.
std::uint32_t decode(std::string_view bytes) {
  constexpr std::array<unsigned, 5> leadbits{0, 0x7f, 0x1f, 0x0f, 0x07};
  std::uint32_t character = byte(bytes[0]) & leadbits.at(bytes.size());
  for (const char next : bytes.substr(1)) character = character << 6U | (byte(next) & 0x3fU);
  return character;
}

bool continues(char character) { return (byte(character) & 0xc0U) == 0x80; }

bool valid(std::string_view bytes, const Form& form) {
  if (bytes.size() < form.length || !std::all_of(bytes.begin() + 1, bytes.end(), continues)) return false;
  const std::uint32_t character = decode(bytes);
  return character >= form.least && character <= 0x10ffff && (character < 0xd800 || character > 0xdfff);
}

/// What a terminal acts upon instead of showing it.
bool acts(std::uint32_t character) {
  const bool control = character < 0x20 || (character >= 0x7f && character < 0xa0);
  const bool direction = character == 0x61c || character == 0x200e || character == 0x200f ||
                         (character >= 0x2028 && character <= 0x202e) || (character >= 0x2066 && character <= 0x2069);
  return control || direction;
}

std::string escaped(std::string_view bytes) {
  if (bytes == "\t") return "\\t";
  if (bytes == "\n") return "\\n";
  if (bytes == "\r") return "\\r";
  std::string text;
  for (const char character : bytes) text += "\\x" + hexadecimal(byte(character), 2);
  return text;
}

bool utf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = utf8length(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

/// One character in a string of JSON.
std::string injson(std::string_view bytes) {
  if (bytes == "\"" || bytes == "\\") return std::string("\\").append(bytes);
  return acts(decode(bytes)) ? "\\u" + hexadecimal(decode(bytes), 4) : std::string(bytes);
}

/// A byte of a name in quotes, as C writes it.
std::string inname(char character) {
  constexpr std::string_view plain = "\a\b\t\n\v\f\r\"\\";
  constexpr std::string_view letters = "abtnvfr\"\\";
  if (const std::size_t place = plain.find(character); place != std::string_view::npos) return {'\\', letters[place]};
  if (byte(character) >= 0x20 && character != 0x7f) return {character};
  const unsigned value = byte(character);
  return {'\\', digits[value / 64], digits[value / 8 % 8], digits[value % 8]};
}

}  // namespace

std::size_t utf8length(std::string_view text) {
  for (const Form& form : forms) {
    if (byte(text[0]) < form.first || byte(text[0]) > form.last) continue;
    return valid(text.substr(0, form.length), form) ? form.length : 0;
  }
  return 0;
}

std::string visible(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t length = utf8length(text);
    const std::string_view bytes = text.substr(0, std::max<std::size_t>(length, 1));
    if (length == 0 || acts(decode(bytes))) {
      result += escaped(bytes);
    } else {
      result += bytes;
    }
    text.remove_prefix(bytes.size());
  }
  return result;
}

std::string headername(std::string_view path) {
  std::string name;
  for (const char character : path) name += inname(character);
  if (name != path) return '"' + name + '"';
  return path.find(' ') == std::string_view::npos ? name : name + '\t';
}

std::string quoted(std::string_view text) {
  const bool lossless = utf8(text);
  std::string result = lossless ? "\"" : R"({"latin1":")";
  while (!text.empty()) {
    const bool single = !lossless && byte(text[0]) >= 0x80;
    const std::size_t length = single ? 1 : utf8length(text);
    result += single ? "\\u" + hexadecimal(byte(text[0]), 4) : injson(text.substr(0, length));
    text.remove_prefix(length);
  }
  return result += lossless ? "\"" : "\"}";
}

}  // namespace tolvane
