#include "legacy/merge.h"

#include "document/ends.h"
#include "document/files.h"
#include "legacy/convertpair.h"

namespace tolvane {

namespace {

void loadlegacy(Lock& lock, const char* path) {
  Original file = Original::opened(lock, path, Lock::Kind::shared);
  load(file);
}

}  // namespace

int merge(const char* path, const char* systempath, const char* networkpath) {
  Lock lock{path, systempath, networkpath};
  loadlegacy(lock, systempath);
  LegacySystem system = convertsystemfile();
  loadlegacy(lock, networkpath);
  joinnetworkfile(system);
  Original target = Original::replaced(lock, path);
  output(target);
  return ran;
}

}  // namespace tolvane
