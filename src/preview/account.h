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
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tolvane {

/// Texts by number, equal ones under one number.
class Vocabulary {
 public:
  Vocabulary() = default;
  ~Vocabulary() = default;
  // No copies: the numbers are looked up by pieces of the texts.
  Vocabulary(const Vocabulary&) = delete;
  Vocabulary& operator=(const Vocabulary&) = delete;
  Vocabulary(Vocabulary&&) = default;
  Vocabulary& operator=(Vocabulary&&) = default;

  std::uint32_t number(std::string_view text);
  [[nodiscard]] std::string_view text(std::uint32_t number) const { return texts_[number]; }

 private:
  std::deque<std::string> texts_;
  std::unordered_map<std::string_view, std::uint32_t> numbers_;
};

/// A line by the numbers of its text and of its section's header, which is its own for a header and the empty text for
/// lines before the first.
struct Entry {
  std::uint32_t section;
  std::uint32_t text;
  bool operator==(const Entry&) const = default;
};

/// The lines of a document at one moment.
using Snapshot = std::vector<Entry>;

/// The entry of a line that stands below a section's header, or of a header.
Entry entryof(std::string_view line, std::uint32_t section, Vocabulary& words);

/// What became of a line. A line that was added has no earlier entry, one that was removed no later one.
struct Change {
  std::optional<Entry> before;
  std::optional<Entry> after;
  bool operator==(const Change&) const = default;

  [[nodiscard]] bool added() const { return !before; }
  [[nodiscard]] bool removed() const { return !after; }
  [[nodiscard]] bool moved() const { return before && after && before->text == after->text; }
  [[nodiscard]] bool changed() const { return before && after && before->text != after->text; }
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
