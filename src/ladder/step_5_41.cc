// The step "5.41": the journal section, the port count, and the mappings of dropped globals.
#include <algorithm>
#include <vector>

#include "document/edits.h"
#include "document/entries.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "document/series.h"
#include "ladder/legacynetwork.h"
#include "ladder/steps.h"

namespace tolvane {

namespace {

/// The journal's purge rule. Kept: a missing one becomes ",2"; one that is empty, begins with 0 or is above 100 becomes
/// "100", and any other text stays.
Text takejournalpurge() {
  Text purge;
  if (!takeentry("[Startup]", "JournalPurge", purge)) return Text(",2");
  const bool stays = !purge.empty() && purge.first() != '0' && number(purge) <= 100;
  return stays ? purge : Text("100");
}

void gatherjournalsettings() {
  saveentry("[Journal]", "JournalHalt", takeentry("[Miscellaneous]", "JournalHalt", "0"));
  saveentry("[Journal]", "NewDatabaseDefault", takeentry("[Miscellaneous]", "JrnlNewGlo", "1"));
  saveentry("[Journal]", "JournalPurge", takejournalpurge());
  saveentry("[Journal]", "TransNumKillJrn", takeentry("[Startup]", "TransNumKillJrn", "1000"));
}

void repairportcount() {
  Text summary = getvalue("[config]", "LegacyNetConn");
  const int ports = ddpports();
  if (!uncounted(summary, 4) || ports == 0) return;
  setfield(summary, 4, ',', Text(ports));
  editentry("[config]", "LegacyNetConn", summary);
  editentry("[Net]", "maxdsmport", Text(ports));  // kept: also when there is no summary
}

bool dropped(std::string_view global) {
  return global.starts_with("odd") || global == "rINDEXCLASS" || global == "mdd";
}

/// A global mapping, and its place among the lines of its section.
struct Mapping {
  int place;
  Line* line;
};

/// The global mappings of a section by number, those of one number in the order of their lines. They are renumbered
/// here, and their lines once at the end: line by line 2,000 dropped ones took 10 s.
using Mappings = std::vector<std::vector<Mapping>>;

Mappings mappingsbelow(const Line* header) {
  const std::size_t lines = countlines(header);
  Mappings mappings(lines + 2);  // a number beyond the lines cannot be reached without a gap, and one is looked ahead
  int place = 0;
  for (Line* line = nextinsection(header); line != nullptr; line = nextinsection(line)) {
    const auto number = static_cast<std::size_t>(numberof(*line, "GloMap_"));
    if (number > 0 && number <= lines) mappings[number].push_back({++place, line});
  }
  return mappings;
}

void dropfirst(std::vector<Mapping>& mappings) {
  discard(mappings.front().line);
  mappings.erase(mappings.begin());
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
  // Kept: only with duplicate numbers is one left here, and it goes.
  if (!mappings[k].empty()) dropfirst(mappings[k]);
}

void dropsubscriptmappings(const Line* header, std::string_view global) {
  for (Line* const line : series(header, Text("GloSLM_", global, '_'))) discard(line);
}

void writenumbers(const Mappings& mappings) {
  for (std::size_t number = 1; number < mappings.size(); ++number) {
    for (const Mapping& mapping : mappings[number]) {
      const Text key{"GloMap_", number};
      if (keyof(*mapping.line) != key) rewrite(*mapping.line, key, valueof(*mapping.line));
    }
  }
}

void dropmappings(const Line* header) {
  Mappings mappings = mappingsbelow(header);
  std::size_t k = 1;
  while (!mappings[k].empty()) {
    const Text global = getfield(valueof(*mappings[k].front().line), 1, ',');
    if (!dropped(global)) {
      ++k;
      continue;
    }
    dropsubscriptmappings(header, global);
    dropfirst(mappings[k]);
    closegap(mappings, k);
  }
  writenumbers(mappings);
}

void cleannamespace(std::string_view name) {
  const Text section{"[NspMap.", name, ']'};
  const Line* const header = find(section);
  if (numbered(header, "GloMap_", 1) == nullptr) return;
  dropmappings(header);
  // Kept: a line with an empty key right below the header counts as no entry, also when nothing was dropped.
  const Line* const first = nextinsection(header);
  if (first == nullptr || keyof(*first).empty()) delsection(section);
}

/// Looks each namespace up anew: what a deleted section leaves may have joined the list.
void dropglobals() {
  for (int n = 1; const Line* const line = numbered(find("[Namespaces]"), "Nsp_", n); ++n) {
    cleannamespace(getfield(valueof(*line), 1, ','));
  }
}

}  // namespace

void step541() {
  gatherjournalsettings();
  repairportcount();
  dropglobals();
}

}  // namespace tolvane
