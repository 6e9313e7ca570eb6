// The step "5.41": the journal section, the port count, and the mappings of dropped globals.
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

void dropsubscriptmappings(const Line* header, std::string_view global) {
  const Text prefix{"GloSLM_", global, '_'};
  for (int n = 1; Line* const line = numbered(header, prefix, n); ++n) discard(line);
}

/// Gives the mappings behind number k the numbers from k on.
void closegap(const Line* header, int k) {
  for (; Line* const line = numbered(header, "GloMap_", k + 1); ++k) {
    rewrite(*line, Text("GloMap_", k), Text(valueof(*line)));
  }
  // Kept: only with duplicate numbers is one left here, and it goes.
  if (Line* const line = numbered(header, "GloMap_", k)) discard(line);
}

void dropmappings(const Line* header) {
  int k = 1;
  while (Line* const line = numbered(header, "GloMap_", k)) {
    const Text global = getfield(valueof(*line), 1, ',');
    if (!dropped(global)) {
      ++k;
      continue;
    }
    dropsubscriptmappings(header, global);
    discard(line);
    closegap(header, k);
  }
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
