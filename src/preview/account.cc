#include "preview/account.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "preview/align.h"

namespace tolvane {

namespace {

constexpr std::uint32_t none = UINT32_MAX;

/// A line that is not kept, and its place among those of the other snapshot when it has a partner there.
struct Loose {
  std::uint32_t line;
  std::uint32_t partner = none;
  Change::Kind kind = Change::Kind::changed;  // with a partner
};

/// The lines that are not kept, of both snapshots. The later ones are in pieces between kept lines: each begins at a
/// place of both lists.
struct Rest {
  struct Gap {
    std::size_t before;
    std::size_t after;
  };

  std::vector<Loose> before = {};
  std::vector<Loose> after = {};
  std::vector<Gap> gaps = {};
};

Rest restof(const Snapshot& before, const Snapshot& after, const Vocabulary& words) {
  Rest rest;
  std::vector<Match> matches = align(before, after, words.size());
  matches.push_back({before.size(), after.size(), 0});
  std::size_t earlier = 0;
  std::size_t later = 0;
  for (const Match& match : matches) {
    rest.gaps.push_back({rest.before.size(), rest.after.size()});
    for (; earlier < match.before; ++earlier) rest.before.push_back({before[earlier]});
    for (; later < match.after; ++later) rest.after.push_back({after[later]});
    earlier += match.length;
    later += match.length;
  }
  rest.gaps.push_back({rest.before.size(), rest.after.size()});
  return rest;
}

/// What lines have to share to be partners. A line without a section gets no partner.
struct Likeness {
  std::uint32_t section = none;
  std::uint32_t hash = 0;
  std::string_view head = {};
  std::string_view tail = {};
  bool operator==(const Likeness&) const = default;
};

using Like = Likeness (*)(std::uint32_t line, const Vocabulary& words);

Likeness sametextandsection(std::uint32_t line, const Vocabulary& /*words*/) { return {line}; }

Likeness sametext(std::uint32_t line, const Vocabulary& words) { return {0, words.hash(line), words.text(line)}; }

Likeness samekey(std::uint32_t line, const Vocabulary& words) {
  const std::string_view text = words.text(line);
  if (text.starts_with('[')) return {};  // a header is no entry
  const std::string_view key = text.substr(0, text.find('='));
  return {words.section(line), hashof(key), key};
}

/// The key without the number at its end, and the value.
Likeness sameseries(std::uint32_t line, const Vocabulary& words) {
  const std::string_view text = words.text(line);
  const std::size_t equals = text.find('=');
  if (text.starts_with('[') || equals == std::string_view::npos) return {};
  std::size_t end = equals;
  while (end > 0 && text[end - 1] >= '0' && text[end - 1] <= '9') --end;
  if (end == equals) return {};
  const std::string_view value = text.substr(equals);
  return {words.section(line), hashof(value), text.substr(0, end), value};
}

/// Where likeness is looked for first.
std::uint32_t placeof(const Likeness& likeness) {
  const std::uint64_t sum = likeness.hash + std::uint64_t{likeness.section} * 0x9e3779b9U;
  return static_cast<std::uint32_t>(sum * 0x9e3779b97f4a7c15U >> 32U);
}

/// Lines without a partner by what they share.
class Groups {
 public:
  Groups(const std::vector<Loose>& lines, Like like, const Vocabulary& words)
      : lines_(lines), like_(like), words_(words), next_(lines.size(), none) {
    std::size_t size = 16;
    while (size < 2 * lines.size()) size *= 2;
    slots_.resize(size);
    for (auto n = static_cast<std::uint32_t>(lines.size()); n-- > 0;) {
      if (lines[n].partner == none) put(n);
    }
  }

  /// Takes the first line off the group of those that are like this one. Returns its place, or none.
  std::uint32_t take(const Likeness& likeness) {
    if (likeness.section == none) return none;
    Slot& slot = slotof(likeness, placeof(likeness));
    if (slot.any == none || slot.first == none) return none;
    return std::exchange(slot.first, next_[slot.first]);
  }

 private:
  /// The lines of a group: any one of them, and the first, from which the others follow.
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t any = none;
    std::uint32_t first = none;
  };

  void put(std::uint32_t place) {
    const Likeness likeness = like_(lines_[place].line, words_);
    if (likeness.section == none) return;
    const std::uint32_t hash = placeof(likeness);
    Slot& slot = slotof(likeness, hash);
    if (slot.any == none) slot = {hash, place, none};
    next_[place] = std::exchange(slot.first, place);
  }

  /// The slot of a group, or the free one where it belongs.
  Slot& slotof(const Likeness& likeness, std::uint32_t hash) {
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t place = hash & mask;; place = (place + 1) & mask) {
      Slot& slot = slots_[place];
      if (slot.any == none) return slot;
      if (slot.hash == hash && like_(lines_[slot.any].line, words_) == likeness) return slot;
    }
  }

  const std::vector<Loose>& lines_;
  Like like_;
  const Vocabulary& words_;
  std::vector<std::uint32_t> next_;  // in the group
  std::vector<Slot> slots_;
};

/// Pairs the lines that are alone yet and alike, the first with the first.
void pairalike(Rest& rest, Like like, Change::Kind kind, const Vocabulary& words) {
  const auto alone = [](const Loose& line) { return line.partner == none; };
  if (std::none_of(rest.before.begin(), rest.before.end(), alone)) return;
  if (std::none_of(rest.after.begin(), rest.after.end(), alone)) return;
  Groups groups{rest.before, like, words};
  for (std::uint32_t place = 0; place < rest.after.size(); ++place) {
    Loose& line = rest.after[place];
    if (line.partner != none) continue;
    const std::uint32_t partner = groups.take(like(line.line, words));
    if (partner == none) continue;
    line.partner = partner;
    line.kind = kind;
    rest.before[partner].partner = place;
  }
}

/// Appends the changes of a piece between two kept lines: what was removed stands before what came in its place.
void appendchanges(const Rest& rest, const Rest::Gap& begin, const Rest::Gap& end, std::vector<Change>& changes) {
  for (std::size_t n = begin.before; n < end.before; ++n) {
    const Loose& line = rest.before[n];
    if (line.partner == none) changes.push_back({Change::Kind::removed, line.line, none});
  }
  for (std::size_t n = begin.after; n < end.after; ++n) {
    const Loose& line = rest.after[n];
    const bool added = line.partner == none;
    changes.push_back(
        {added ? Change::Kind::added : line.kind, added ? none : rest.before[line.partner].line, line.line});
  }
}

}  // namespace

std::vector<Change> compare(const Snapshot& before, const Snapshot& after, const Vocabulary& words) {
  Rest rest = restof(before, after, words);
  pairalike(rest, sametextandsection, Change::Kind::moved, words);
  pairalike(rest, sametext, Change::Kind::moved, words);
  pairalike(rest, sameseries, Change::Kind::changed, words);
  pairalike(rest, samekey, Change::Kind::changed, words);
  std::vector<Change> changes;
  for (std::size_t n = 0; n + 1 < rest.gaps.size(); ++n) {
    appendchanges(rest, rest.gaps[n], rest.gaps[n + 1], changes);
  }
  return changes;
}

Account count(std::size_t before, const std::vector<Change>& changes) {
  Account account;
  for (const Change& change : changes) {
    account.added += change.kind == Change::Kind::added ? 1U : 0U;
    account.removed += change.kind == Change::Kind::removed ? 1U : 0U;
    account.moved += change.kind == Change::Kind::moved ? 1U : 0U;
    account.changed += change.kind == Change::Kind::changed ? 1U : 0U;
  }
  account.kept = before - account.changed - account.moved - account.removed;
  return account;
}

}  // namespace tolvane
