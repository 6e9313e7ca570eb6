// The step "5.41": the journal section, the port count, and the mappings of dropped globals.
#include "document/edits.h"
#include "document/entries.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "ladder/droppedglobals.h"
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

}  // namespace

void step541() {
  gatherjournalsettings();
  repairportcount();
  dropglobals();
}

}  // namespace tolvane
