#include "document/fields.h"

#include <algorithm>

namespace tolvane {

namespace {

/// Where the text behind that many separators begins; npos when there are fewer. Fields are short: to search for each
/// separator takes longer than to look at every character.
std::size_t behind(int separators, std::string_view value, char separator) {
  std::size_t begin = 0;
  while (separators > 0 && begin < value.size()) {
    if (value[begin++] == separator) --separators;
  }
  return separators > 0 ? std::string_view::npos : begin;
}

}  // namespace

char takefields(std::string_view value, int from, int to, char separator, Text& output) {
  from = std::max(from, 1);
  to = std::max(to, from);
  const std::size_t begin = behind(from - 1, value, separator);
  const std::string_view rest = value.substr(std::min(begin, value.size()));
  const std::size_t after = begin == std::string_view::npos ? begin : behind(to - from + 1, rest, separator);
  const bool more = after != std::string_view::npos;
  output.set(more ? rest.substr(0, after - 1) : rest);
  return more ? separator : '\0';
}

char getfield(std::string_view value, int n, char separator, Text& output) {
  return takefields(value, n, n, separator, output);
}

Text getfield(std::string_view value, int n, char separator) {
  Text field;
  getfield(value, n, separator, field);
  return field;
}

std::string_view firstfield(std::string_view value, char separator) { return value.substr(0, value.find(separator)); }

int numfields(std::string_view value, char separator) {
  return 1 + static_cast<int>(std::count(value.begin(), value.end(), separator));
}

void replacefield(std::string_view value, int n, char separator, std::string_view text, Text& output) {
  n = std::max(n, 1);
  const std::size_t begin = behind(n - 1, value, separator);
  Text result;
  if (begin == std::string_view::npos) {
    result.append(value);
    for (int missing = n - numfields(value, separator); missing > 0; --missing) result.append(separator);
    result.append(text);
  } else {
    const std::size_t end = std::min(value.find(separator, begin), value.size());
    result.set(value.substr(0, begin), text, value.substr(end));
  }
  output = result;
}

Text replacefield(std::string_view value, int n, char separator, std::string_view text) {
  Text result;
  replacefield(value, n, separator, text, result);
  return result;
}

void setfield(Text& value, int n, char separator, std::string_view text) {
  replacefield(value, n, separator, text, value);
}

void changechar(std::string_view source, char from, char to, Text& output) {
  Text result;
  for (const char character : source) result.append(character == from ? to : character);
  output = result;
}

int within(std::string_view needle, std::string_view haystack) {
  const std::size_t position = haystack.find(needle);
  return position == std::string_view::npos ? 0 : static_cast<int>(position) + 1;
}

void alphaupper(std::string_view source, Text& output) {
  Text result;
  for (const char character : source) {
    const bool lower = character >= 'a' && character <= 'z';
    result.append(lower ? static_cast<char>(character - 'a' + 'A') : character);
  }
  output = result;
}

}  // namespace tolvane
