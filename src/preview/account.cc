#include "preview/account.h"

#include <algorithm>

#include "preview/align.h"

namespace tolvane {

namespace {

constexpr std::size_t none = SIZE_MAX;

/// For each line of a snapshot its partner in the other one, or none.
struct Partners {
  std::vector<std::size_t> ofbefore;
  std::vector<std::size_t> ofafter;
  std::vector<bool> kept;  // by the place in the later snapshot

  void pair(std::size_t before, std::size_t after) {
    ofbefore[before] = after;
    ofafter[after] = before;
  }
};

std::vector<std::uint64_t> items(const Snapshot& snapshot) {
  std::vector<std::uint64_t> result;
  result.reserve(snapshot.size());
  for (const Entry& entry : snapshot) result.push_back((std::uint64_t{entry.section} << 32U) | entry.text);
  return result;
}

Partners keptpartners(const Snapshot& before, const Snapshot& after) {
  Partners partners{std::vector(before.size(), none), std::vector(after.size(), none),
                    std::vector(after.size(), false)};
  for (const Match& match : align(items(before), items(after))) {
    partners.pair(match.before, match.after);
    partners.kept[match.after] = true;
  }
  return partners;
}

std::vector<std::size_t> alone(const std::vector<std::size_t>& partners) {
  std::vector<std::size_t> result;
  for (std::size_t n = 0; n < partners.size(); ++n) {
    if (partners[n] == none) result.push_back(n);
  }
  return result;
}

/// What lines have to share to be partners; empty for a line that gets none.
using Likeness = std::string (*)(const Entry& entry, const Vocabulary& words);

std::string sectionof(const Entry& entry) { return std::to_string(entry.section) + '\n'; }

std::string sametext(const Entry& entry, const Vocabulary& /*words*/) { return std::to_string(entry.text); }

std::string sametextandsection(const Entry& entry, const Vocabulary& words) {
  return sectionof(entry) + sametext(entry, words);
}

std::string samekey(const Entry& entry, const Vocabulary& words) {
  const std::string_view text = words.text(entry.text);
  if (text.starts_with('[')) return {};  // a header is no entry
  return sectionof(entry).append(text.substr(0, text.find('=')));
}

/// The key without the number at its end, and the value.
std::string sameseries(const Entry& entry, const Vocabulary& words) {
  const std::string_view text = words.text(entry.text);
  const std::size_t equals = text.find('=');
  if (text.starts_with('[') || equals == std::string_view::npos) return {};
  const std::size_t digits = text.substr(0, equals).find_last_not_of("0123456789") + 1;
  if (digits == equals) return {};
  return sectionof(entry).append(text.substr(0, digits)).append(text.substr(equals));
}

/// Pairs the lines that are alone yet and alike, the first with the first.
void pairalike(const Snapshot& before, const Snapshot& after, const Vocabulary& words, Likeness likeness,
               Partners& partners) {
  std::unordered_map<std::string, std::vector<std::size_t>> places;  // in the earlier snapshot, the first one last
  const std::vector<std::size_t> earlier = alone(partners.ofbefore);
  std::for_each(earlier.rbegin(), earlier.rend(),
                [&](std::size_t place) { places[likeness(before[place], words)].push_back(place); });
  places.erase(std::string());
  for (const std::size_t place : alone(partners.ofafter)) {
    const auto found = places.find(likeness(after[place], words));
    if (found == places.end() || found->second.empty()) continue;
    partners.pair(found->second.back(), place);
    found->second.pop_back();
  }
}

}  // namespace

std::uint32_t Vocabulary::number(std::string_view text) {
  const auto known = numbers_.find(text);
  if (known != numbers_.end()) return known->second;
  const auto number = static_cast<std::uint32_t>(texts_.size());
  numbers_.emplace(texts_.emplace_back(text), number);
  return number;
}

Entry entryof(std::string_view line, std::uint32_t section, Vocabulary& words) {
  const std::uint32_t text = words.number(line);
  return {line.starts_with('[') ? text : section, text};
}

std::vector<Change> compare(const Snapshot& before, const Snapshot& after, const Vocabulary& words) {
  Partners partners = keptpartners(before, after);
  for (const Likeness likeness : {sametextandsection, sametext, sameseries, samekey}) {
    pairalike(before, after, words, likeness, partners);
  }
  std::vector<Change> changes;
  std::size_t earlier = 0;
  // What was removed up to the next line that was kept stands before what came in its place.
  const auto removals = [&](std::size_t end) {
    for (; earlier < end; ++earlier) {
      if (partners.ofbefore[earlier] == none) changes.push_back({before[earlier], std::nullopt});
    }
  };
  std::size_t nextkept = 0;
  for (std::size_t place = 0; place < after.size(); ++place) {
    for (nextkept = std::max(nextkept, place); nextkept < after.size() && !partners.kept[nextkept];) ++nextkept;
    removals(nextkept < after.size() ? partners.ofafter[nextkept] : before.size());
    if (partners.kept[place]) continue;
    const std::size_t partner = partners.ofafter[place];
    changes.push_back({partner == none ? std::nullopt : std::optional(before[partner]), after[place]});
  }
  removals(before.size());
  return changes;
}

Account count(std::size_t before, const std::vector<Change>& changes) {
  Account account;
  for (const Change& change : changes) {
    account.added += change.added() ? 1U : 0U;
    account.removed += change.removed() ? 1U : 0U;
    account.moved += change.moved() ? 1U : 0U;
    account.changed += change.changed() ? 1U : 0U;
  }
  account.kept = before - account.changed - account.moved - account.removed;
  return account;
}

}  // namespace tolvane
