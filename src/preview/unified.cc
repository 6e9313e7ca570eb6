#include "preview/unified.h"

#include <algorithm>
#include <vector>

#include "preview/account.h"
#include "preview/align.h"
#include "preview/escape.h"

namespace tolvane {

namespace {

constexpr std::size_t context = 3;

using Lines = std::vector<std::string_view>;

/// The lines of a text with their newlines.
Lines split(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return lines;
}

std::vector<std::uint64_t> numbers(const Lines& lines, Vocabulary& words) {
  std::vector<std::uint64_t> result;
  result.reserve(lines.size());
  for (const std::string_view line : lines) result.push_back(words.number(line));
  return result;
}

/// Lines of the one text and what stands in the other in their place.
struct Difference {
  std::size_t before, beforeend, after, afterend;
};

std::vector<Difference> differences(const Lines& before, const Lines& after) {
  Vocabulary words;
  const std::vector<std::uint64_t> earlier = numbers(before, words);
  std::vector<Match> matches = align(earlier, numbers(after, words));
  matches.push_back({before.size(), after.size()});
  std::vector<Difference> found;
  Match next{0, 0};
  for (const Match& match : matches) {
    if (match != next) found.push_back({next.before, match.before, next.after, match.after});
    next = {match.before + 1, match.after + 1};
  }
  return found;
}

void write(std::string& diff, char sign, std::string_view line) {
  diff.append(1, sign).append(line);
  if (!line.ends_with('\n')) diff += "\n\\ No newline at end of file\n";
}

/// Where a hunk begins and how long it is; one without lines stands behind the line that it names.
std::string range(std::size_t begin, std::size_t end) {
  const std::size_t length = end - begin;
  return std::to_string(length == 0 ? begin : begin + 1) + (length == 1 ? "" : ',' + std::to_string(length));
}

/// The differences of one hunk, and the texts that they are between.
struct Hunk {
  const Lines& before;
  const Lines& after;
  const Difference* first;
  const Difference* last;
};

void write(std::string& diff, const Hunk& hunk) {
  const std::size_t lead = std::min(context, hunk.first->before);
  const std::size_t tail = std::min(context, hunk.before.size() - hunk.last->beforeend);
  std::size_t place = hunk.first->before - lead;
  diff += "@@ -" + range(place, hunk.last->beforeend + tail) + " +" +
          range(hunk.first->after - lead, hunk.last->afterend + tail) + " @@\n";
  for (const Difference* difference = hunk.first; difference <= hunk.last; ++difference) {
    for (; place < difference->before; ++place) write(diff, ' ', hunk.before[place]);
    for (; place < difference->beforeend; ++place) write(diff, '-', hunk.before[place]);
    for (std::size_t n = difference->after; n < difference->afterend; ++n) write(diff, '+', hunk.after[n]);
  }
  for (const std::size_t end = place + tail; place < end; ++place) write(diff, ' ', hunk.before[place]);
}

/// The colour of a line of a diff; none for the lines that are in both texts.
std::string_view colorof(std::string_view line) {
  if (line.starts_with("--- ") || line.starts_with("+++ ")) return "\033[1m";
  if (line.starts_with('-')) return "\033[31m";
  if (line.starts_with('+')) return "\033[32m";
  return line.starts_with('@') ? "\033[36m" : "";
}

}  // namespace

std::string unified(std::string_view before, std::string_view after, std::string_view name, std::string_view newname) {
  const Lines earlier = split(before);
  const Lines later = split(after);
  const std::vector<Difference> found = differences(earlier, later);
  if (found.empty()) return {};
  std::string diff = "--- " + headername(name) + "\n+++ " + headername(newname) + '\n';
  for (std::size_t first = 0; first < found.size();) {
    std::size_t last = first;
    while (last + 1 < found.size() && found[last + 1].before - found[last].beforeend <= 2 * context) ++last;
    write(diff, Hunk{earlier, later, &found[first], &found[last]});
    first = last + 1;
  }
  return diff;
}

std::string shown(std::string_view diff, bool color) {
  std::string text;
  for (std::string_view line : split(diff)) {
    line.remove_suffix(1);
    const std::string_view hue = color ? colorof(line) : "";
    text.append(hue).append(visible(line)).append(hue.empty() ? "\n" : "\033[0m\n");
  }
  return text;
}

}  // namespace tolvane
