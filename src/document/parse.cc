#include "document/parse.h"

#include <algorithm>

#include "document/linestore.h"

namespace tolvane {

namespace {

/// Cuts the bytes into lines, and lines into pieces that fit into a Text, and gives each piece that is not blank to
/// `take` with the number of its line.
template <typename Take>
Reading split(std::string_view bytes, const Take& take) {
  const bool nuls = bytes.find('\0') != std::string_view::npos;  // a look at all bytes spares one at each line
  Reading reading;
  for (std::size_t number = 1; !bytes.empty(); ++number) {
    const std::size_t length = std::min(bytes.find('\n'), bytes.size());
    const std::string_view line = bytes.substr(0, length);
    bytes.remove_prefix(std::min(length + 1, bytes.size()));
    if (length > Text::maximum) ++reading.split;
    if (nuls && line.find('\0') != std::string_view::npos) ++reading.cut;
    // A line of exactly as many characters as fit leaves no rest.
    for (std::size_t begin = 0; begin == 0 || begin < length; begin += Text::maximum) {
      std::string_view piece = line.substr(begin, Text::maximum);
      if (nuls) piece = piece.substr(0, piece.find('\0'));
      if (blankline(piece)) {
        ++reading.blank;
      } else {
        ++reading.lines;
        take(piece, number);
      }
    }
  }
  return reading;
}

/// Whether an empty line stands before this one in the file.
bool separated(const Line& line) { return line.header() && &line != start; }

}  // namespace

Reading parse(std::string_view bytes) {
  emptystore();
  return split(bytes, [](std::string_view text, std::size_t /*number*/) { dlstore(makeentry(text)); });
}

std::vector<std::size_t> linenumbers(std::string_view bytes) {
  std::vector<std::size_t> numbers;
  split(bytes, [&numbers](std::string_view /*text*/, std::size_t number) { numbers.push_back(number); });
  return numbers;
}

std::string contents(std::size_t size) {
  std::string text;
  text.reserve(size);
  for (const Line* line = start; line != nullptr; line = line->next()) {
    if (separated(*line)) text += '\n';
    text.append(line->text()).append(1, '\n');
  }
  return text;
}

bool blankline(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char character) { return character == ' ' || character == '\t'; });
}

}  // namespace tolvane
