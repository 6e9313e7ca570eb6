#include "ladder/droppedglobals.h"

#include <algorithm>
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

/// The subscript-level mappings of a section by their keys. Searched from the header for each dropped global, 10,000
/// mappings with as many of these took 1.5 s instead of 0.05 s.
Index subscriptmappings(const Line* header) {
  Index index;
  for (Line* line = below(header); line != nullptr; line = nextinsection(line)) {
    if (line->text.view().starts_with("GloSLM_")) index.emplace(keyof(*line), line);
  }
  return index;
}

void dropmapping(Line* mapping, Index& subscripts) {
  const Text global{globalof(*mapping)};
  int number = 0;
  while (Line* const line = take(subscripts, Text("GloSLM_", global, '_', ++number))) discard(line);
  discard(mapping);
}

void renumber(Line& mapping, std::size_t number) { rewrite(mapping, Text(prefix, number), valueof(mapping)); }

/// Closes the gaps by counting, which is right where no number stands twice.
void dropunique(const std::vector<Line*>& mappings, Index& subscripts) {
  std::size_t number = 0;
  std::size_t kept = 0;
  for (Line* const mapping : mappings) {
    ++number;
    if (dropped(mapping)) {
      dropmapping(mapping, subscripts);
    } else if (++kept < number) {
      renumber(*mapping, kept);
    }
  }
}

/// A global mapping, and its place among the mappings of its section.
struct Mapping {
  std::size_t place;
  Line* line;
};

/// The mappings of a section by number, those of one number in the order of their lines. They are renumbered here, and
/// their lines once at the end.
using Mappings = std::vector<std::vector<Mapping>>;

/// The mappings with a number up to the first gap.
Mappings mappingsbelow(const Line* header, std::size_t count) {
  Mappings mappings(count + 2);  // from 1, and an empty one behind the last
  std::size_t place = 0;
  for (Line* line = below(header); line != nullptr; line = nextinsection(line)) {
    const auto number = static_cast<std::size_t>(numberof(*line, prefix));
    if (number > 0 && number <= count) mappings[number].push_back({++place, line});
  }
  return mappings;
}

/// Gives the first of each number behind k the number before.
void closegap(Mappings& mappings, std::size_t k) {
  for (; !mappings[k + 1].empty(); ++k) {
    const Mapping moved = mappings[k + 1].front();
    mappings[k + 1].erase(mappings[k + 1].begin());
    const auto behind = std::find_if(mappings[k].begin(), mappings[k].end(),
                                     [&](const Mapping& other) { return other.place > moved.place; });
    mappings[k].insert(behind, moved);
  }
  if (mappings[k].empty()) return;
  // Kept: only where a number stands twice is one left here, and it goes.
  discard(mappings[k].front().line);
  mappings[k].erase(mappings[k].begin());
}

/// Closes the gap behind each dropped mapping by itself: one that stands behind another of its number moves up there.
void droprepeated(Mappings mappings, Index& subscripts) {
  for (std::size_t k = 1; !mappings[k].empty();) {
    Line* const mapping = mappings[k].front().line;
    if (!dropped(mapping)) {
      ++k;
      continue;
    }
    dropmapping(mapping, subscripts);
    mappings[k].erase(mappings[k].begin());
    closegap(mappings, k);
  }
  for (std::size_t number = 1; number < mappings.size(); ++number) {
    for (const Mapping& mapping : mappings[number]) {
      if (static_cast<std::size_t>(numberof(*mapping.line, prefix)) != number) renumber(*mapping.line, number);
    }
  }
}

/// Whether one of the numbers from 1 up to the count, each of which stands in the section, stands there twice.
bool repeated(const Line* header, std::size_t count) {
  std::size_t lines = 0;
  for (Line* line = below(header); line != nullptr; line = nextinsection(line)) {
    const auto number = static_cast<std::size_t>(numberof(*line, prefix));
    if (number > 0 && number <= count) ++lines;
  }
  return lines > count;
}

void dropmappings(const Line* header, const std::vector<Line*>& mappings) {
  if (std::none_of(mappings.begin(), mappings.end(), dropped)) return;
  Index subscripts = subscriptmappings(header);
  if (repeated(header, mappings.size())) {
    droprepeated(mappingsbelow(header, mappings.size()), subscripts);
  } else {
    dropunique(mappings, subscripts);
  }
}

/// Cleans the mapping section of a namespace. True when it left its lines to the section before.
bool cleannamespace(std::string_view name, Index& headers) {
  const Text section{"[NspMap.", name, ']'};
  const auto found = headers.lower_bound(section);
  if (found == headers.end() || found->first != section.view()) return false;
  Line* const header = found->second;
  const std::vector<Line*> mappings = series(header, prefix);
  if (mappings.empty()) return false;
  dropmappings(header, mappings);
  const Line* const first = below(header);
  // Kept: a line with an empty key right below the header counts as no entry, also when nothing was dropped.
  if (first != nullptr && !keyof(*first).empty()) return false;
  headers.erase(found);
  discard(header);
  return first != nullptr;
}

/// The headers of all mapping sections, so that none is looked for from the top.
Index mappingsections() {
  Index headers;
  for (Line* line = start; line != nullptr; line = line->next) {
    if (line->text.view().starts_with("[NspMap.")) headers.emplace(line->text, line);
  }
  return headers;
}

}  // namespace

void dropglobals() {
  Index headers = mappingsections();
  std::vector<Line*> namespaces = series(find("[Namespaces]"), "Nsp_");
  for (std::size_t n = 0; n < namespaces.size(); ++n) {
    const bool joined = cleannamespace(getfield(valueof(*namespaces[n]), 1, ','), headers);
    if (joined) namespaces = series(find("[Namespaces]"), "Nsp_");  // the lines may have joined the list
  }
}

}  // namespace tolvane
