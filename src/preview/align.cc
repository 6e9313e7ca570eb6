// What both sequences begin and end with is paired first. Between, items that stand once in each are anchors, as many
// of them as ascend in both, and what lies between two anchors is done in the same way. Where there is no anchor a
// small piece is paired by the table of the longest common subsequence, and of a large one the n-th of an item with the
// n-th.
#include "preview/align.h"

#include <algorithm>
#include <unordered_map>

namespace tolvane {

namespace {

using Items = std::span<const std::uint64_t>;

/// A piece of both sequences, by the places of its ends, and how often it was cut out of another.
struct Piece {
  std::size_t before, beforeend, after, afterend;
  int depth;
};

constexpr int deepest = 24;
constexpr std::size_t largesttable = 1 << 20;

/// The longest run of matches, given in the order of `before`, that ascends in `after` too.
std::vector<Match> ascending(const std::vector<Match>& matches) {
  std::vector<std::size_t> tails;                               // the match that ends the best run of each length
  std::vector<std::size_t> previous(matches.size(), SIZE_MAX);  // in its run
  for (std::size_t n = 0; n < matches.size(); ++n) {
    const auto tail = std::partition_point(tails.begin(), tails.end(),
                                           [&](std::size_t other) { return matches[other].after < matches[n].after; });
    if (tail != tails.begin()) previous[n] = *std::prev(tail);
    if (tail == tails.end()) {
      tails.push_back(n);
    } else {
      *tail = n;
    }
  }
  std::vector<Match> run;
  for (std::size_t n = tails.empty() ? SIZE_MAX : tails.back(); n != SIZE_MAX; n = previous[n]) {
    run.push_back(matches[n]);
  }
  std::reverse(run.begin(), run.end());
  return run;
}

/// Where an item stands last in each sequence, and how often.
struct Found {
  std::size_t before, after;
  int inbefore, inafter;
};

std::vector<Match> anchors(Items before, Items after, const Piece& piece) {
  std::unordered_map<std::uint64_t, Found> items;
  for (std::size_t n = piece.before; n < piece.beforeend; ++n) {
    Found& found = items[before[n]];
    found.before = n;
    ++found.inbefore;
  }
  for (std::size_t n = piece.after; n < piece.afterend; ++n) {
    const auto item = items.find(after[n]);
    if (item == items.end()) continue;
    item->second.after = n;
    ++item->second.inafter;
  }
  std::vector<Match> matches;
  for (std::size_t n = piece.before; n < piece.beforeend; ++n) {
    const Found& found = items[before[n]];
    if (found.inbefore == 1 && found.inafter == 1) matches.push_back({n, found.after});
  }
  return ascending(matches);
}

/// The n-th of an item in the one piece with the n-th in the other.
std::vector<Match> samecount(Items before, Items after, const Piece& piece) {
  std::unordered_map<std::uint64_t, std::vector<std::size_t>> places;  // in `after`, the next one last
  for (std::size_t n = piece.afterend; n-- > piece.after;) places[after[n]].push_back(n);
  std::vector<Match> matches;
  for (std::size_t n = piece.before; n < piece.beforeend; ++n) {
    const auto place = places.find(before[n]);
    if (place == places.end() || place->second.empty()) continue;
    matches.push_back({n, place->second.back()});
    place->second.pop_back();
  }
  return ascending(matches);
}

std::vector<Match> longestcommon(Items before, Items after, const Piece& piece) {
  const std::size_t rows = piece.beforeend - piece.before;
  const std::size_t columns = piece.afterend - piece.after;
  const std::size_t width = columns + 1;
  std::vector<std::uint32_t> lengths((rows + 1) * width);  // of what is left behind a row and a column
  for (std::size_t row = rows; row-- > 0;) {
    for (std::size_t column = columns; column-- > 0;) {
      const std::size_t cell = row * width + column;
      lengths[cell] = before[piece.before + row] == after[piece.after + column]
                          ? lengths[cell + width + 1] + 1
                          : std::max(lengths[cell + width], lengths[cell + 1]);
    }
  }
  std::vector<Match> matches;
  for (std::size_t row = 0, column = 0; row < rows && column < columns;) {
    const std::size_t cell = row * width + column;
    if (before[piece.before + row] == after[piece.after + column]) {
      matches.push_back({piece.before + row++, piece.after + column++});
    } else if (lengths[cell + width] >= lengths[cell + 1]) {
      ++row;
    } else {
      ++column;
    }
  }
  return matches;
}

/// Pairs the ends of the piece and takes them off.
void trim(Items before, Items after, Piece& piece, std::vector<Match>& matches) {
  while (piece.before < piece.beforeend && piece.after < piece.afterend && before[piece.before] == after[piece.after]) {
    matches.push_back({piece.before++, piece.after++});
  }
  while (piece.before < piece.beforeend && piece.after < piece.afterend &&
         before[piece.beforeend - 1] == after[piece.afterend - 1]) {
    matches.push_back({--piece.beforeend, --piece.afterend});
  }
}

bool empty(const Piece& piece) { return piece.before == piece.beforeend || piece.after == piece.afterend; }

bool small(const Piece& piece) {
  return piece.beforeend - piece.before < largesttable / (piece.afterend - piece.after + 1);
}

/// Puts what lies before, between and behind the anchors on the heap of pieces.
void cut(const Piece& piece, const std::vector<Match>& anchors, std::vector<Piece>& pieces) {
  Piece rest = piece;
  ++rest.depth;
  for (const Match& anchor : anchors) {
    pieces.push_back({rest.before, anchor.before, rest.after, anchor.after, rest.depth});
    rest.before = anchor.before + 1;
    rest.after = anchor.after + 1;
  }
  pieces.push_back(rest);
}

}  // namespace

std::vector<Match> align(Items before, Items after) {
  std::vector<Match> matches;
  std::vector<Piece> pieces{
      {0, before.size(), 0, after.size(), 0}
  };
  while (!pieces.empty()) {
    Piece piece = pieces.back();
    pieces.pop_back();
    trim(before, after, piece, matches);
    if (empty(piece)) continue;
    std::vector<Match> found;
    if (piece.depth < deepest) found = anchors(before, after, piece);
    if (!found.empty()) {
      cut(piece, found, pieces);
    } else {
      found = small(piece) ? longestcommon(before, after, piece) : samecount(before, after, piece);
    }
    matches.insert(matches.end(), found.begin(), found.end());
  }
  std::sort(matches.begin(), matches.end(),
            [](const Match& one, const Match& other) { return one.before < other.before; });
  return matches;
}

}  // namespace tolvane
