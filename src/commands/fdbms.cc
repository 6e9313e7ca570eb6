#include "commands/commands.h"
#include "commands/convert.h"
#include "document/ends.h"
#include "document/files.h"
#include "document/series.h"

namespace tolvane {

int fdbms(const char* path) {
  Lock lock{path};
  Original original = Original::opened(lock, path);
  load(original);
  (void)versionentry();
  // Kept: a database listed behind a gap in the numbers is not seen, and the gap is filled.
  const Place place = locate("[Datasets]", "DataSet_", "FDBMS");
  if (place.line != nullptr) return ran;
  savenumbered("[Datasets]", "DataSet_", place.number, "FDBMS,fdbms,,0,P,0,0");
  output(original);
  return ran;
}

}  // namespace tolvane
