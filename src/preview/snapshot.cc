// A part of a conversion changes few lines of many. Each line of the store is therefore compared with the line that
// stood there before the part: with its text, for nodes are reused. Only a line that differs is looked up in the
// vocabulary. The number of a line that is found there tells where the lines are the same again.
#include "preview/snapshot.h"

#include <algorithm>

namespace tolvane {

namespace {

/// A place in the bytes of a file.
struct Cursor {
  std::string_view bytes;
  std::size_t place = 0;
  std::size_t number = 1;  // of the line in the file

  /// Goes to the beginning of a line if the cursor is in an earlier one.
  void godown(std::size_t line) {
    for (; number < line; ++number) place = bytes.find('\n', place) + 1;
  }

  /// Returns whether a text begins at the cursor, and goes behind it.
  bool take(std::string_view text) {
    const bool found = bytes.substr(place, text.size()) == text;
    if (found) place += text.size();
    return found;
  }
};

constexpr std::size_t ahead = 12;
constexpr std::size_t halfline = 40;  // a node of a short line lies in one or two cache lines

/// The store while it is compared with an earlier snapshot.
struct Comparison {
  const Snapshot& before;
  std::vector<const void*>& nodes;  // of the lines before
  Vocabulary& words;
  std::size_t place = 0;                   // in the earlier snapshot
  bool same = true;                        // so far
  Snapshot now = {};                       // unless it is the same
  std::vector<const void*> nownodes = {};  // likewise
  std::vector<std::uint32_t> places = {};  // of each line in the earlier snapshot; any place if it has none

  /// Adds the lines between two places to those of now.
  void keep(std::size_t begin, std::size_t end) {
    now.insert(now.end(), before.data() + begin, before.data() + end);
    nownodes.insert(nownodes.end(), nodes.data() + begin, nodes.data() + end);
  }

  void differ() {
    same = false;
    now.reserve(before.size() + 64);
    nownodes.reserve(before.size() + 64);
    keep(0, place);
    places.resize(words.size());
    for (std::size_t n = before.size(); n-- > 0;) places[before[n]] = static_cast<std::uint32_t>(n);
  }

  /// Adds a line that is not the next one of the earlier snapshot, and returns its number. Goes behind it if it stands
  /// there.
  std::uint32_t look(const Line* line, std::uint32_t section) {
    if (same) differ();
    const std::uint32_t number = words.number(line->text(), section);
    if (number < places.size() && places[number] < before.size() && before[places[number]] == number) {
      place = places[number] + 1;
    }
    now.push_back(number);
    nownodes.push_back(line);
    return number;
  }

  /// Goes on to the first line that is not the next one of the earlier snapshot; null if there is none.
  const Line* skip(const Line* line, std::uint32_t& section) {
    const std::size_t begin = place;
    std::size_t end = place;
    for (const std::size_t most = before.size(); line != nullptr && end < most; line = line->next()) {
      fetch(end + ahead);
      if (!words.is(before[end], line->text(), section)) break;
      section = words.section(before[end]);
      nodes[end++] = line;
    }
    place = end;
    if (!same) keep(begin, end);
    return line;
  }

  /// Fetches a node from memory. Without, waiting for it took most of the time.
  void fetch(std::size_t coming) const {
    if (coming >= nodes.size()) return;
    const char* const node = static_cast<const char*>(nodes[coming]);
    __builtin_prefetch(node);
    __builtin_prefetch(node + halfline);
  }

  void add(const Line* first) {
    std::uint32_t section = Vocabulary::nosection;
    for (const Line* line = first; (line = skip(line, section)) != nullptr; line = line->next()) {
      section = words.section(look(line, section));
    }
  }
};

}  // namespace

Snapshot parsedlines(std::string_view bytes, Vocabulary& words) {
  const std::vector<std::size_t> numbers = linenumbers(bytes);
  Snapshot lines;
  lines.reserve(numbers.size());
  words.reserve(numbers.size());
  Cursor cursor{bytes};
  std::uint32_t section = Vocabulary::nosection;
  for (const Line* line = start; line != nullptr; line = line->next()) {
    cursor.godown(numbers[lines.size()]);
    const std::size_t begin = cursor.place;
    const std::string_view text = line->text();
    // Behind a NUL byte or a blank piece of a split line, the next piece is not where it is looked for.
    const bool lent = cursor.take(text);
    lines.push_back(lent ? words.lent(bytes.substr(begin, text.size()), section) : words.number(text, section));
    section = words.section(lines.back());
  }
  return lines;
}

std::optional<Snapshot> Watch::look(const Aside* aside, Vocabulary& words) {
  nodes_.resize(lines_.size());
  Comparison comparison{lines_, nodes_, words};
  if (aside != nullptr) comparison.add(aside->first());
  comparison.add(start);
  if (comparison.same && comparison.place < lines_.size()) comparison.differ();
  if (comparison.same) return {};
  nodes_ = std::move(comparison.nownodes);
  return std::exchange(lines_, std::move(comparison.now));
}

}  // namespace tolvane
