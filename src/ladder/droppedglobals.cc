#include "ladder/droppedglobals.h"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "document/entries.h"
#include "document/fields.h"
#include "document/series.h"

namespace tolvane {

namespace {

constexpr std::string_view prefix = "GloMap_";

/// Lines by a piece of their text; equal ones in the order of the store.
using Index = std::multimap<std::string_view, Line*>;

/// The first line that the index has under that text. It is taken out of the index. None when there is none.
Line* take(Index& index, std::string_view text) {
  const auto found = index.lower_bound(text);
  if (found == index.end() || found->first != text) return nullptr;
  Line* const line = found->second;
  index.erase(found);
  return line;
}

/// The global of a mapping: field 1.
std::string_view globalof(const Line& mapping) { return firstfield(valueof(mapping), ','); }

bool dropped(const Line* mapping) {
  const std::string_view global = globalof(*mapping);
  return global.starts_with("odd") || global == "rINDEXCLASS" || global == "mdd";
}

/// A global mapping, its place among the mappings of its section, and the number in its key.
struct Mapping {
  std::size_t place;
  std::size_t number;
  Line* line;

  friend bool operator>(const Mapping& mapping, const Mapping& other) { return mapping.place > other.place; }
};

/// The further mappings of a number, as a heap with the first of them in front.
using Duplicates = std::vector<Mapping>;

Mapping takefirst(Duplicates& duplicates) {
  std::pop_heap(duplicates.begin(), duplicates.end(), std::greater{});
  const Mapping first = duplicates.back();
  duplicates.pop_back();
  return first;
}

/// Puts a mapping among the duplicates and returns the first of them.
Mapping exchangefirst(Duplicates& duplicates, const Mapping& mapping) {
  std::pop_heap(duplicates.begin(), duplicates.end(), std::greater{});
  const Mapping first = std::exchange(duplicates.back(), mapping);
  std::push_heap(duplicates.begin(), duplicates.end(), std::greater{});
  return first;
}

/// The mappings of a section. Lines get their new number once, at the end. The subscript-level mappings are indexed:
/// a search from the header for each dropped global took 1.5 s instead of 0.05 s for 10,000 mappings.
struct Mappings {
  std::vector<Mapping> firsts;                   // the first mapping of number n is firsts[n - 1 + shift]
  std::size_t shift = 0;                         // the number of dropped mappings
  std::map<std::size_t, Duplicates> duplicates;  // by number
  Index subscripts;                              // the subscript-level mappings by key
};

/// The mappings with the numbers from 1 to `count`, each of which has at least one.
Mappings mappingsbelow(const Line* header, std::size_t count) {
  Mappings mappings{.firsts = std::vector<Mapping>(count), .duplicates = {}, .subscripts = {}};
  std::size_t place = 0;
  for (Line* line = below(header); line != nullptr; line = nextinsection(line)) {
    const auto number = static_cast<std::size_t>(numberof(*line, prefix));
    if (number == 0 && line->text().view().starts_with("GloSLM_")) mappings.subscripts.emplace(keyof(*line), line);
    if (number == 0 || number > count) continue;
    const Mapping mapping{++place, number, line};
    Mapping& first = mappings.firsts[number - 1];
    if (first.line == nullptr) {
      first = mapping;
    } else {
      mappings.duplicates[number].push_back(mapping);
    }
  }
  return mappings;
}

/// Gives the first mapping of each number above the gap the number before. Only the numbers with duplicates need work:
/// a mapping that comes to such a number may not be the first there.
void closegap(Mappings& mappings, std::size_t gap) {
  auto& [firsts, shift, duplicates, subscripts] = mappings;
  const std::size_t last = firsts.size() - shift++;
  auto entry = duplicates.lower_bound(gap);
  for (; entry != duplicates.end() && entry->first < last; ++entry) {
    auto& [number, others] = *entry;
    Mapping& moved = firsts[number - 1 + shift];
    if (moved > others.front()) moved = exchangefirst(others, moved);
  }
  if (entry == duplicates.end() || entry->second.empty()) return;
  // Kept: no mapping comes to the last number, and its first duplicate is deleted.
  discard(takefirst(entry->second).line);
  if (!entry->second.empty()) firsts.push_back(takefirst(entry->second));
}

void dropmapping(Mappings& mappings, std::size_t number, Line* mapping) {
  const Text global{globalof(*mapping)};
  int subscript = 0;
  while (Line* const line = take(mappings.subscripts, Text("GloSLM_", global, '_', ++subscript))) discard(line);
  discard(mapping);
  closegap(mappings, number);
}

void renumber(const Mapping& mapping, std::size_t number) {
  if (mapping.number != number) rewrite(*mapping.line, Text(prefix, number), valueof(*mapping.line));
}

/// Returns how many mappings are left in the series.
std::size_t dropmappings(Mappings mappings) {
  std::size_t number = 1;
  while (number + mappings.shift <= mappings.firsts.size()) {
    const Mapping first = mappings.firsts[number - 1 + mappings.shift];
    if (dropped(first.line)) {
      dropmapping(mappings, number, first.line);
    } else {
      renumber(first, number++);
    }
  }
  for (const auto& [duplicated, duplicates] : mappings.duplicates) {
    for (const Mapping& mapping : duplicates) renumber(mapping, duplicated);
  }
  return number - 1;
}

/// A mapping section that was cleaned. It can only change by lines that join it at its end.
struct Cleaned {
  std::size_t count = 0;  // the mappings of its series, of which none is dropped
  Line* end = nullptr;    // its last line, none as long as one namespace alone has named it
};

/// By their headers.
using CleanedSections = std::map<const Line*, Cleaned>;

/// True when a line that has joined the section continues its series.
bool continued(Cleaned& section) {
  while (Line* const line = nextinsection(section.end)) {
    if (static_cast<std::size_t>(numberof(*line, prefix)) == section.count + 1) return true;
    section.end = line;
  }
  return false;
}

/// Cleans the mapping section of a namespace. One that many namespaces name is walked whole only where it has changed:
/// without, 5,000 of them took 67 s.
void cleannamespace(std::string_view name, CleanedSections& sections) {
  Line* const header = find(Text("[NspMap.", name, ']'));
  if (header == nullptr) return;
  const auto [place, alone] = sections.try_emplace(header);
  Cleaned& section = place->second;
  if (section.end != nullptr && !continued(section)) return;
  const std::vector<Line*> mappings = series(header, prefix);
  const bool clean = std::none_of(mappings.begin(), mappings.end(), dropped);
  section.count = clean ? mappings.size() : dropmappings(mappingsbelow(header, mappings.size()));
  const Line* const first = below(header);
  // Kept: a line with an empty key right below the header counts as no entry, also when nothing was dropped.
  if (!mappings.empty() && (first == nullptr || keyof(*first).empty())) {
    sections.erase(place);
    discard(header);  // what is left joins the section before
  } else if (!alone) {
    section.end = lastinsection(header);
  }
}

/// The list of the namespaces, which grows when a mapping section behind it joins it.
struct Namespaces {
  Line* end;                      // its last line so far
  std::map<int, Line*> numbered;  // the first line of each number
};

void readon(Namespaces& namespaces) {
  while (Line* const line = nextinsection(namespaces.end)) {
    namespaces.numbered.try_emplace(numberof(*line, "Nsp_"), line);
    namespaces.end = line;
  }
}

}  // namespace

void dropglobals() {
  Namespaces namespaces{find("[Namespaces]"), {}};
  if (namespaces.end == nullptr) return;
  readon(namespaces);
  CleanedSections sections;
  for (int n = 1; namespaces.numbered.contains(n); ++n) {
    cleannamespace(getfield(valueof(*namespaces.numbered[n]), 1, ','), sections);
    readon(namespaces);
  }
}

}  // namespace tolvane
