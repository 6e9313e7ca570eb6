// The legacy network: the entry "LegacyNetConn" in "[config]", six numbers separated by "," of which field 1 is the
// node count and field 4 the port count, and the numbered entries of the servers that it counts.
#pragma once

#include "document/edits.h"
#include "document/entries.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "document/series.h"

namespace tolvane {

/// How many DDP servers are listed.
inline int countddp() { return countseries("[DSM-DDP]", "NetIsDDP_"); }

/// True when a DDP host is named.
inline bool hasddphost() { return !getvalue("[DSM-DDP]", "DdpHost").empty(); }

/// The ports that the DDP servers need: one each, one for a host alone, 0 without either.
inline int ddpports() {
  const int servers = countddp();
  return servers == 0 && hasddphost() ? 1 : servers;
}

/// The nodes that DDP servers take: "maxnode", at least 64.
inline int ddpnodes() {
  const int nodes = numberin("[Net]", "maxnode");
  return nodes > 64 ? nodes : 64;
}

/// True when field n of the summary is empty or its number is 0: it was never counted.
inline bool uncounted(const Text& summary, int n) { return number(getfield(summary, n, ',')) == 0; }

}  // namespace tolvane
