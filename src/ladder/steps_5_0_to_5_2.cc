// The steps "5.0" to "5.2".
#include "document/edits.h"
#include "document/entries.h"
#include "document/series.h"
#include "ladder/check_zpg.h"
#include "ladder/legacynetwork.h"
#include "ladder/steps.h"
#include "standard/databases.h"

namespace tolvane {

namespace {

int countlegacyconnections() {
  return countddp() + countseries("[Data Servers]", "NetIsUDP_") + countseries("[Data Servers]", "NetIsEther_");
}

}  // namespace

void step50() { check_zpg(false); }

void step505() { check_audit(false); }

void step52() {
  delentry("[config]", "niceval");
  saveentry("[config]", "MaxServers", takeentry("[ECP]", "MaxServers", "2"));
  saveentry("[config]", "MaxServerConn", takeentry("[ECP]", "MaxServerConn", "2"));
  minvalue("[config]", "LegacyNetConn", Text(countlegacyconnections()));
}

}  // namespace tolvane
