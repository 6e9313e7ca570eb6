#include "commands/fdbms.h"

#include "commands/versionentry.h"
#include "document/series.h"

namespace tolvane {

int fdbms(const char* path) {
  Lock lock{path};
  Original original = Original::opened(lock, path);
  load(original);
  versionentry();
  // Kept: a database listed behind a gap in the numbers is not seen, and the gap is filled.
  const Place place = locate("[Datasets]", "DataSet_", "FDBMS");
  if (place.line != nullptr) return 1;
  savenumbered("[Datasets]", "DataSet_", place.number, "FDBMS,fdbms,,0,P,0,0");
  output(original);
  return 1;
}

}  // namespace tolvane
