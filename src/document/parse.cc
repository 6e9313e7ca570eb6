#include "document/parse.h"

#include <algorithm>

#include "document/linestore.h"

namespace tolvane {

namespace {

/// Appends a line to the store unless it is blank.
void add(std::string_view text, std::size_t number, Reading& reading) {
  if (blankline(text)) {
    ++reading.blank;
    return;
  }
  dlstore(makeentry(text));
  reading.numbers.push_back(number);
}

/// Whether an empty line stands before this one in the file.
bool separated(const Line& line) { return line.header() && &line != start; }

}  // namespace

Reading parse(std::string_view bytes) {
  emptystore();
  Reading reading;
  for (std::size_t number = 1; !bytes.empty(); ++number) {
    const std::size_t length = std::min(bytes.find('\n'), bytes.size());
    const std::string_view line = bytes.substr(0, length);
    bytes.remove_prefix(std::min(length + 1, bytes.size()));
    if (length > Text::maximum) ++reading.split;
    if (line.find('\0') != std::string_view::npos) ++reading.cut;
    // A line of exactly as many characters as fit leaves no rest.
    for (std::size_t begin = 0; begin == 0 || begin < length; begin += Text::maximum) {
      const std::string_view piece = line.substr(begin, Text::maximum);
      add(piece.substr(0, piece.find('\0')), number, reading);
    }
  }
  return reading;
}

std::string contents() {
  std::size_t size = 0;
  for (const Line* line = start; line != nullptr; line = line->next()) size += line->text().length() + 2;
  std::string text;
  text.reserve(size);
  for (const Line* line = start; line != nullptr; line = line->next()) {
    if (separated(*line)) text += '\n';
    text.append(line->text()).append(1, '\n');
  }
  return text;
}

bool blankline(std::string_view text) { return text.find_first_not_of(" \t") == std::string_view::npos; }

}  // namespace tolvane
