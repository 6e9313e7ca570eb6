// The steps "5.42" to "5.45".
#include "document/edits.h"
#include "document/entries.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "ladder/legacynetwork.h"
#include "ladder/platformrecord.h"
#include "ladder/steps.h"

namespace tolvane {

namespace {

void repairnodecount() {
  Text summary = getvalue("[config]", "LegacyNetConn");
  const int ports = ddpports();
  if (!uncounted(summary, 1) || ports == 0) return;
  setfield(summary, 1, ',', Text(ddpnodes()));
  if (uncounted(summary, 4)) {
    setfield(summary, 4, ',', Text(ports));
    editentry("[Net]", "maxdsmport", Text(ports));  // kept: also when there is no summary
  }
  editentry("[config]", "LegacyNetConn", summary);
}

/// Raises the size of a routine buffer to 32, in field 2 where there is one that differs from field 1. Returns the old
/// size, or 32 when there was none.
int raisebuffersize() {
  Text value;
  if (!getvalue("[config]", "rbufsiz", value)) {
    saveentry("[config]", "rbufsiz", "32");
    return 32;
  }
  const Text first = getfield(value, 1, ',');
  const Text second = getfield(value, 2, ',');
  const bool separate = !second.empty() && second != first;
  const int size = number(separate ? second : first);
  if (size > 31) return size;
  editentry("[config]", "rbufsiz", separate ? replacefield(value, 2, ',', "32") : Text("32"));
  return size;
}

/// Scales the routine buffers from a smaller size to 32; adds them when they are missing. Kept: from a size of 0 they
/// are not scaled, and none of them count as one.
void scaleroutines(int oldsize) {
  Text value;
  if (!getvalue("[config]", "routines", value)) {
    saveentry("[config]", "routines", "0");
  } else if (oldsize <= 31 && oldsize != 0) {
    const int routines = number(value) == 0 ? 1 : number(value);
    editentry("[config]", "routines", Text(static_cast<std::int64_t>(32.0 / oldsize * routines + 0.1)));
  }
}

}  // namespace

void step542() {
  editentry("[SqlSysDatatypes]", "DOUBLE", "%Library.Double");
  editentry("[SqlSysDatatypes]", "DOUBLE PRECISION", "%Library.Double");
  repairnodecount();
}

void step543() {
  delentry("[Miscellaneous]", "DefLoginNSP");
  putentry("[SqlSysDatatypes]", "SMALLDATETIME", "%Library.TimeStamp");
  putentry("[SqlSysDatatypes]", "SYSNAME", "%Library.String(MAXLEN=128)");
  if (platformfamily() == "VMS") scaleroutines(raisebuffersize());
}

void step544() {
  constexpr std::string_view oldending = "AMD64";
  const Text record = platformrecord();
  const Text name = getfield(record, 1, '~');
  if (!name.view().ends_with(oldending)) return;
  const std::string_view stem = name.view().substr(0, name.length() - oldending.size());
  setplatformrecord(replacefield(record, 1, '~', Text(stem, "x86-64")));
}

void step545() {
  delentry("[Language]", "PhysicalCursor");
  delentry("[config]", "rbufsiz");  // kept: step "5.43" may just have set it
}

}  // namespace tolvane
