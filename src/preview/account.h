// The account of lines: what became of each line of one state of a document in a later one.
//
// Of both states only the text counts, a line being the same when its text is and the header of its section:
//   kept     it stands in both, in the same order
//   moved    the same text stands in another place, perhaps in another section
//   changed  the entry has another value: same section and key; or another number in its series: same section and
//            value, and a key that differs in its last digits alone
//   removed  stands in the earlier state only
//   added    stands in the later state only
// so that kept + changed + moved + removed are the lines before, and kept + changed + moved + added those after. Where
// several lines could be paired they are in their order.
#pragma once

#include <cstdint>
#include <vector>

#include "preview/vocabulary.h"

namespace tolvane {

/// The lines of a document at one moment, by their numbers.
using Snapshot = std::vector<std::uint32_t>;

/// What became of a line. A line that was added has no earlier number, one that was removed no later one.
struct Change {
  enum class Kind : std::uint8_t { changed, moved, removed, added };

  Kind kind;
  std::uint32_t before;
  std::uint32_t after;
  bool operator==(const Change&) const = default;

  /// The line as it is now, or as it was before it was removed.
  [[nodiscard]] std::uint32_t line() const { return kind == Kind::removed ? before : after; }
};

/// How many lines there are of each kind.
struct Account {
  std::size_t kept = 0;
  std::size_t changed = 0;
  std::size_t moved = 0;
  std::size_t removed = 0;
  std::size_t added = 0;
  bool operator==(const Account&) const = default;
};

/// Every change from one snapshot to the other, in the order of the later one; what was removed stands where it was.
std::vector<Change> compare(const Snapshot& before, const Snapshot& after, const Vocabulary& words);

/// The account of the changes to that many lines.
Account count(std::size_t before, const std::vector<Change>& changes);

}  // namespace tolvane
