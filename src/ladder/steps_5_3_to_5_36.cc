// The steps "5.3" to "5.36".
#include "document/edits.h"
#include "document/entries.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "document/pairs.h"
#include "document/series.h"
#include "ladder/check_zpg.h"
#include "ladder/legacynetwork.h"
#include "ladder/steps.h"

namespace tolvane {

namespace {

/// What a series of servers holds: all its entries, and those that differ in field 1 or 2.
struct Servers {
  int entries;
  int distinct;
};

Servers countservers(std::string_view prefix, int pairlist) {
  Servers servers{0, 0};
  for (const Line* const line : series(find("[Data Servers]"), prefix)) {
    const std::string_view value = valueof(*line);
    servers.distinct += addpair(getfield(value, 1, ','), getfield(value, 2, ','), pairlist);
    ++servers.entries;
  }
  return servers;
}

/// Sets "implheap" to field n of the value, at least 131072; adds it when it is missing.
void setheap(const Text& value, int n) {
  const Text size = getfield(value, n, ',');
  putentry("[config]", "implheap", number(size) < 131072 ? "131072" : size.view());
}

constexpr int locktableminimum = 1179648;

/// Adds to "gmheap" what the lock table grows by, divided by 1024. Kept: a missing "gmheap" becomes 3200 in any case.
void growheap(int locks) {
  Text heap;
  if (!getvalue("[config]", "gmheap", heap)) {
    saveentry("[config]", "gmheap", "3200");
    return;
  }
  const int shortfall = int32(std::int64_t{locktableminimum} - locks) / 1024;
  editentry("[config]", "gmheap", Text(int32(std::int64_t{number(heap)} + shortfall)));
}

/// Kept: when "locksiz" is missing, "gmheap" only becomes at least 3200. When "locksiz" is large enough, a missing
/// "gmheap" is not added.
void raiselocktable() {
  Text locks;
  if (!getvalue("[config]", "locksiz", locks)) {
    saveentry("[config]", "locksiz", Text(locktableminimum));
    minvalue("[config]", "gmheap", "3200");
  } else if (number(locks) < locktableminimum) {
    editentry("[config]", "locksiz", Text(locktableminimum));
    growheap(number(locks));
  }
}

}  // namespace

void step53() {
  const Servers udp = countservers("NetIsUDP_", 0);
  const Servers ethernet = countservers("NetIsEther_", 1);
  const int entries = udp.entries + ethernet.entries;
  // Kept: nodes count entries, connections count distinct servers, and 5 nodes come on top only of some.
  int nodes = entries == 0 ? 0 : entries + 5;
  if (countddp() != 0) nodes = int32(std::int64_t{nodes} + ddpnodes());
  const int connections = udp.distinct + ethernet.distinct + (hasddphost() ? 1 : 0);
  const std::int64_t third = std::int64_t{connections} * 506;
  const Text limits{numberin("[Net]", "maxdsmport"), ',', numberin("[Net]", "maxdsmhostperport"), ',',
                    numberin("[Net]", "maxdsmjobsperconn")};
  editentry("[config]", "LegacyNetConn", Text(nodes, ',', connections, ',', third, ',', limits));
  keepentry("[Cluster]", "ClusterCommAddr", "");
}

void step532() {
  const Text setskills = takeentry("[Startup]", "JournalSetsKills", "");
  if (setskills.first() == '2') editentry("[Miscellaneous]", "JrnlNewGlo", "1");
}

void step534() {
  // Kept: a missing size becomes 5 MB, one that is too small 1 MB.
  keepentry("[Startup]", "maxconsolelogsize", "5242880");
  minvalue("[Startup]", "maxconsolelogsize", "1048576");
  check_zpg(false);
}

void step535() {
  saveentry("[Startup]", "WebServer", "ON,8972");  // kept: a second one where the file has one
  const Text heap = getvalue("[config]", "implheap");
  setheap(heap, numfields(heap, ',') == 1 ? 1 : 2);
  const Text memory = getvalue("[config]", "useresidentmem");
  if (numfields(memory, ',') > 1) editentry("[config]", "useresidentmem", getfield(memory, 2, ','));
}

void step536() {
  // Kept: unlike in step "5.35" an "implheap" without a second field becomes the minimum.
  setheap(getvalue("[config]", "implheap"), 2);
  raiselocktable();
}

}  // namespace tolvane
