#include "preview/unified.h"

#include <algorithm>
#include <span>
#include <vector>

#include "preview/account.h"
#include "preview/align.h"
#include "preview/escape.h"

namespace tolvane {

namespace {

constexpr std::size_t context = 3;
constexpr std::size_t outputsize = 1 << 16;

/// Takes the first line off a text, with its newline.
std::string_view takeline(std::string_view& text) {
  const std::string_view line = text.substr(0, std::min(text.find('\n'), text.size() - 1) + 1);
  text.remove_prefix(line.size());
  return line;
}

/// Lines of the one text and what stands in the other in their place.
struct Difference {
  std::size_t before, beforeend, after, afterend;
};

/// Where both texts differ, and how many lines the earlier one has.
struct Differences {
  std::vector<Difference> found;
  std::size_t lines;
};

Differences differences(std::string_view before, std::string_view after) {
  Vocabulary words;
  Snapshot later;
  while (!after.empty()) later.push_back(words.lent(takeline(after), Vocabulary::nosection));
  // No empty line is part of a text: its number can stand for all that the later text does not have.
  Repeats earlier;
  std::string_view previous;
  std::uint32_t number = 0;
  while (!before.empty()) {
    const std::string_view line = takeline(before);
    if (line != previous) number = words.known(line, Vocabulary::nosection);  // blank lines come in thousands
    earlier.push_back(number);
    previous = line;
  }
  std::vector<Match> matches = align(earlier, later, words.size());
  matches.push_back({earlier.size(), later.size(), 0});
  Differences differences{{}, earlier.size()};
  std::size_t earlierend = 0;
  std::size_t laterend = 0;
  for (const Match& match : matches) {
    const Difference difference{earlierend, match.before, laterend, match.after};
    if (match.before != earlierend || match.after != laterend) differences.found.push_back(difference);
    earlierend = match.before + match.length;
    laterend = match.after + match.length;
  }
  return differences;
}

/// The lines of a text, by their numbers in ascending order.
struct Lines {
  std::string_view rest;
  std::size_t place = 0;

  std::string_view at(std::size_t number) {
    for (; place < number; ++place) takeline(rest);
    ++place;
    return takeline(rest);
  }
};

/// The diff, passed on in pieces of whole lines.
struct Output {
  const Sink& sink;
  std::string piece = {};

  void add(char sign, std::string_view line) {
    piece.append(1, sign).append(line);
    if (!line.ends_with('\n')) piece += "\n\\ No newline at end of file\n";
    if (piece.size() >= outputsize) flush();
  }
  void flush() {
    sink(piece);
    piece.clear();
  }
};

/// Where a hunk begins and how long it is; one without lines stands behind the line that it names.
std::string range(std::size_t begin, std::size_t end) {
  const std::size_t length = end - begin;
  return std::to_string(length == 0 ? begin : begin + 1) + (length == 1 ? "" : ',' + std::to_string(length));
}

/// The differences of one hunk, and the lines of the earlier text that follow it.
struct Hunk {
  std::span<const Difference> differences;
  std::size_t following;
};

/// The lines around the differences are those of the earlier text.
void write(const Hunk& hunk, Lines& before, Lines& after, Output& output) {
  const Difference& first = hunk.differences.front();
  const Difference& last = hunk.differences.back();
  const std::size_t lead = std::min(context, first.before);
  const std::size_t tail = std::min(context, hunk.following);
  std::size_t place = first.before - lead;
  output.piece +=
      "@@ -" + range(place, last.beforeend + tail) + " +" + range(first.after - lead, last.afterend + tail) + " @@\n";
  for (const Difference& difference : hunk.differences) {
    for (; place < difference.before; ++place) output.add(' ', before.at(place));
    for (; place < difference.beforeend; ++place) output.add('-', before.at(place));
    for (std::size_t n = difference.after; n < difference.afterend; ++n) output.add('+', after.at(n));
  }
  for (const std::size_t end = place + tail; place < end; ++place) output.add(' ', before.at(place));
}

/// The colour of a line of a diff; none for the lines that are in both texts.
std::string_view colorof(std::string_view line) {
  if (line.starts_with("--- ") || line.starts_with("+++ ")) return "\033[1m";
  if (line.starts_with('-')) return "\033[31m";
  if (line.starts_with('+')) return "\033[32m";
  return line.starts_with('@') ? "\033[36m" : "";
}

}  // namespace

void unified(std::string_view before, std::string_view after, std::string_view name, std::string_view newname,
             const Sink& sink) {
  const auto [found, lines] = differences(before, after);
  if (found.empty()) return;
  Output output{sink};
  output.piece = "--- " + headername(name) + "\n+++ " + headername(newname) + '\n';
  Lines earlier{before};
  Lines later{after};
  for (std::size_t first = 0; first < found.size();) {
    std::size_t back = first;
    while (back + 1 < found.size() && found[back + 1].before - found[back].beforeend <= 2 * context) ++back;
    const Hunk hunk{std::span(found).subspan(first, back + 1 - first), lines - found[back].beforeend};
    write(hunk, earlier, later, output);
    first = back + 1;
  }
  output.flush();
}

std::string shown(std::string_view diff, bool color) {
  std::string text;
  while (!diff.empty()) {
    std::string_view line = takeline(diff);
    line.remove_suffix(1);
    const std::string_view hue = color ? colorof(line) : "";
    appendvisible(text.append(hue), line);
    text += hue.empty() ? "\n" : "\033[0m\n";
  }
  return text;
}

}  // namespace tolvane
