// The steps "5.37" to "5.40".
#include "document/edits.h"
#include "document/entries.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "ladder/steps.h"

namespace tolvane {

namespace {

/// From a number of routine buffers to what they take: times "rbufsiz", 32 when that says nothing, by 1024.
void sizeroutines() {
  Text routines;
  if (!getvalue("[config]", "routines", routines)) {
    saveentry("[config]", "routines", "0");
    return;
  }
  const std::int64_t buffers = number64(getfield(routines, 1, ','));
  const std::int64_t size = number64(getvalue("[config]", "rbufsiz"));
  editentry("[config]", "routines", Text(product64(buffers, size == 0 ? 32 : size) / 1024));
}

/// From bytes to megabytes.
void sizeconsolelog() {
  Text size;
  if (getvalue("[Startup]", "maxconsolelogsize", size)) {
    editentry("[Startup]", "maxconsolelogsize", Text(number(size) / 1048576));
  } else {
    saveentry("[Startup]", "maxconsolelogsize", "5");
  }
}

}  // namespace

void step537() {
  sizeroutines();
  sizeconsolelog();
  delentry("[config]", "implheap");
}

void step539() {
  constexpr Edit directories[] = {
      {"CurrentDirectory",   ""},
      {"AlternateDirectory", ""},
      {"FileSizeLimit",      ""},
  };
  saveall("[Journal]", directories);  // kept: also beside those that are there
}

void step540() { delentry("[Startup]", "journalmode"); }

}  // namespace tolvane
