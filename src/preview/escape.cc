#include "preview/escape.h"

namespace tolvane {

namespace {

constexpr std::string_view digits = "01234567";

unsigned byte(char character) { return static_cast<unsigned char>(character); }

/// Returns true for printable ASCII without either of these characters. Most texts are, and need no closer look.
bool isplain(std::string_view text, char without, char orwithout) {
  unsigned outside = 0;
  for (const char character : text) {
    outside |= byte(character) - 0x20U > 0x7eU - 0x20U ? 1U : 0U;
    outside |= character == without || character == orwithout ? 1U : 0U;
  }
  return outside == 0;
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
  return iscontrol(decoded(bytes)) ? "\\u" + hexadecimal(decoded(bytes), 4) : std::string(bytes);
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

std::string headername(std::string_view path) {
  std::string name;
  for (const char character : path) name += inname(character);
  if (name != path) return '"' + name + '"';
  return path.find(' ') == std::string_view::npos ? name : name + '\t';
}

void appendvisible(std::string& output, std::string_view text) {
  if (isplain(text, '\n', '\n')) {
    output += text;
  } else {
    output += visible(text);
  }
}

void appendquoted(std::string& output, std::string_view text) {
  if (isplain(text, '"', '\\')) {
    output.append(1, '"').append(text).append(1, '"');
    return;
  }
  const bool lossless = utf8(text);
  output += lossless ? "\"" : R"({"latin1":")";
  while (!text.empty()) {
    const bool single = !lossless && byte(text[0]) >= 0x80;
    const std::size_t length = single ? 1 : utf8length(text);
    output += single ? "\\u" + hexadecimal(byte(text[0]), 4) : injson(text.substr(0, length));
    text.remove_prefix(length);
  }
  output += lossless ? "\"" : "\"}";
}

std::string quoted(std::string_view text) {
  std::string result;
  appendquoted(result, text);
  return result;
}

}  // namespace tolvane
