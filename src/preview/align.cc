// What both sequences begin and end with is paired first. Between, items that stand once in each are anchors, as many
// of them as ascend in both, and what lies between two anchors is done in the same way. Where there is no anchor a
// small piece is paired by the table of the longest common subsequence, and of a large one the n-th of an item with the
// n-th.
#include "preview/align.h"

#include <algorithm>

#include "preview/ascending.h"

namespace tolvane {

namespace {

/// A piece of both sequences, by the places of its ends, and how often it was cut out of another. One of equal items is
/// paired already.
struct Piece {
  std::size_t before, beforeend, after, afterend;
  int depth;
};

constexpr int paired = -1;
constexpr int deepest = 24;
constexpr std::size_t largesttable = 1 << 20;

/// Adds a match, which may go on where the last one ends.
void add(std::vector<Match>& matches, std::size_t before, std::size_t after, std::size_t length = 1) {
  if (length == 0) return;
  if (!matches.empty()) {
    Match& last = matches.back();
    if (last.before + last.length == before && last.after + last.length == after) {
      last.length += length;
      return;
    }
  }
  matches.push_back({before, after, length});
}

/// Where an item stands last in each sequence, counted from 1. 0 if it does not stand there.
struct Found {
  std::uint32_t before, after;
};

constexpr std::uint32_t several = UINT32_MAX;  // a place of an item that stands more than once

/// Both sequences, and room for what is known of each item.
template <typename Before>
struct Sequences {
  const Before& before;
  std::span<const std::uint32_t> after;
  std::vector<Found> found;

  Found& inbefore(std::size_t place) { return found[before[place]]; }
  Found& inafter(std::size_t place) { return found[after[place]]; }

  /// Clears the room for the items of a piece.
  void clear(const Piece& piece) {
    for (std::size_t n = piece.before; n < piece.beforeend; ++n) inbefore(n) = {0, 0};
    for (std::size_t n = piece.after; n < piece.afterend; ++n) inafter(n) = {0, 0};
  }
};

/// Notes a place of an item.
void note(std::uint32_t& found, std::size_t place) {
  found = found == 0 ? static_cast<std::uint32_t>(place + 1) : several;
}

template <typename Before>
std::vector<Pairing> anchors(Sequences<Before>& both, const Piece& piece) {
  both.clear(piece);
  for (std::size_t n = piece.before; n < piece.beforeend; ++n) note(both.inbefore(n).before, n);
  for (std::size_t n = piece.after; n < piece.afterend; ++n) note(both.inafter(n).after, n);
  std::vector<Pairing> pairings;
  for (std::size_t n = piece.before; n < piece.beforeend; ++n) {
    const Found& found = both.inbefore(n);
    if (found.before == several || found.after == several || found.after == 0) continue;
    pairings.push_back({static_cast<std::uint32_t>(n), found.after - 1});
  }
  return ascending(pairings);
}

/// The n-th of an item in the one piece with the n-th in the other.
template <typename Before>
std::vector<Pairing> samecount(Sequences<Before>& both, const Piece& piece) {
  both.clear(piece);
  // The places of each item in `after` are a list, from the first to the last.
  std::vector<std::uint32_t> next(piece.afterend - piece.after);
  for (std::size_t n = piece.afterend; n-- > piece.after;) {
    next[n - piece.after] = both.inafter(n).after;
    both.inafter(n).after = static_cast<std::uint32_t>(n + 1);
  }
  std::vector<Pairing> pairings;
  for (std::size_t n = piece.before; n < piece.beforeend; ++n) {
    std::uint32_t& place = both.inbefore(n).after;
    if (place == 0) continue;
    pairings.push_back({static_cast<std::uint32_t>(n), place - 1});
    place = next[place - 1 - piece.after];
  }
  return ascending(pairings);
}

/// The places in `before` whose items stand in `after`: no other row of the table has a match or is chosen over a
/// column.
template <typename Before>
std::vector<std::uint32_t> rowsof(Sequences<Before>& both, const Piece& piece) {
  both.clear(piece);
  for (std::size_t n = piece.after; n < piece.afterend; ++n) note(both.inafter(n).after, n);
  std::vector<std::uint32_t> rows;
  for (std::size_t n = piece.before; n < piece.beforeend; ++n) {
    if (both.inbefore(n).after != 0) rows.push_back(static_cast<std::uint32_t>(n));
  }
  return rows;
}

template <typename Before>
std::vector<Pairing> longestcommon(Sequences<Before>& both, const Piece& piece) {
  const std::vector<std::uint32_t> rows = rowsof(both, piece);
  const std::span<const std::uint32_t> columns = both.after.subspan(piece.after, piece.afterend - piece.after);
  // How many can be paired behind a row and a column, for one row; and whether the row below has as many.
  std::vector<std::uint32_t> lengths(columns.size() + 1);
  std::vector<char> down(rows.size() * columns.size());
  for (std::size_t row = rows.size(); row-- > 0;) {
    const std::uint32_t item = both.before[rows[row]];
    std::uint32_t diagonal = 0;  // of the row below
    for (std::size_t column = columns.size(); column-- > 0;) {
      const std::uint32_t below = lengths[column];
      const std::uint32_t right = lengths[column + 1];
      down[row * columns.size() + column] = below >= right ? 1 : 0;
      lengths[column] = item == columns[column] ? diagonal + 1 : std::max(below, right);
      diagonal = below;
    }
  }
  std::vector<Pairing> pairings;
  for (std::size_t row = 0, column = 0; row < rows.size() && column < columns.size();) {
    if (both.before[rows[row]] == columns[column]) {
      pairings.push_back({rows[row++], static_cast<std::uint32_t>(piece.after + column++)});
    } else if (down[row * columns.size() + column] != 0) {
      ++row;
    } else {
      ++column;
    }
  }
  return pairings;
}

/// Takes the equal ends off the piece: pairs the first ones, and returns the last ones as a piece.
template <typename Before>
Piece trim(const Sequences<Before>& both, Piece& piece, std::vector<Match>& matches) {
  const std::size_t begin = piece.before;
  while (piece.before < piece.beforeend && piece.after < piece.afterend &&
         both.before[piece.before] == both.after[piece.after]) {
    ++piece.before;
    ++piece.after;
  }
  const std::size_t length = piece.before - begin;
  add(matches, begin, piece.after - length, length);
  Piece end{0, piece.beforeend, 0, piece.afterend, paired};
  while (piece.before < piece.beforeend && piece.after < piece.afterend &&
         both.before[piece.beforeend - 1] == both.after[piece.afterend - 1]) {
    --piece.beforeend;
    --piece.afterend;
  }
  end.before = piece.beforeend;
  end.after = piece.afterend;
  return end;
}

bool empty(const Piece& piece) { return piece.before == piece.beforeend || piece.after == piece.afterend; }

bool small(const Piece& piece) {
  return piece.beforeend - piece.before < largesttable / (piece.afterend - piece.after + 1);
}

/// Puts the anchors and what lies before, between and behind them on the heap of pieces, the first one on top.
void cut(const Piece& piece, const std::vector<Pairing>& anchors, std::vector<Piece>& pieces) {
  const std::size_t bottom = pieces.size();
  Piece rest = piece;
  ++rest.depth;
  for (const Pairing& anchor : anchors) {
    const Piece between{rest.before, anchor.before, rest.after, anchor.after, rest.depth};
    rest.before = anchor.before + 1U;
    rest.after = anchor.after + 1U;
    const bool adjacent = between.before == between.beforeend && between.after == between.afterend;
    if (adjacent && pieces.size() > bottom) {
      pieces.back().beforeend = rest.before;
      pieces.back().afterend = rest.after;
      continue;
    }
    if (!empty(between)) pieces.push_back(between);
    pieces.push_back({anchor.before, rest.before, anchor.after, rest.after, paired});
  }
  if (!empty(rest)) pieces.push_back(rest);
  std::reverse(pieces.begin() + static_cast<std::ptrdiff_t>(bottom), pieces.end());
}

template <typename Before>
std::vector<Match> aligned(Sequences<Before> both, std::size_t items) {
  std::vector<Match> matches;
  std::vector<Piece> pieces{
      {0, both.before.size(), 0, both.after.size(), 0}
  };
  while (!pieces.empty()) {
    Piece piece = pieces.back();
    pieces.pop_back();
    if (piece.depth == paired) {
      add(matches, piece.before, piece.after, piece.beforeend - piece.before);
      continue;
    }
    const Piece end = trim(both, piece, matches);
    if (!empty(end)) pieces.push_back(end);
    if (empty(piece)) continue;
    both.found.resize(items);
    std::vector<Pairing> found;
    if (piece.depth < deepest) found = anchors(both, piece);
    if (!found.empty()) {
      cut(piece, found, pieces);
      continue;
    }
    found = small(piece) ? longestcommon(both, piece) : samecount(both, piece);
    for (const Pairing& pairing : found) add(matches, pairing.before, pairing.after);
  }
  return matches;
}

}  // namespace

std::vector<Match> align(std::span<const std::uint32_t> before, std::span<const std::uint32_t> after,
                         std::size_t items) {
  return aligned(Sequences<std::span<const std::uint32_t>>{before, after, {}}, items);
}

std::vector<Match> align(const Repeats& before, std::span<const std::uint32_t> after, std::size_t items) {
  return aligned(Sequences<Repeats>{before, after, {}}, items);
}

}  // namespace tolvane
