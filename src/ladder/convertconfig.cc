#include "ladder/convertconfig.h"

#include "document/fields.h"
#include "ladder/check_platupg.h"
#include "ladder/ladder.h"
#include "ladder/platformrecord.h"

namespace tolvane {

namespace {

bool checkplatform() {
  beginpart("platform check");
  return check_platupg();
}

}  // namespace

bool passesgate(std::string_view version) { return versionolder(currentversion, version); }

bool convertconfig(std::string_view version) {
  // Kept: if the platform check edits a file of an unknown version, `update` still gives it the current version.
  if (!passesgate(version)) return checkplatform();
  climb("main", ladder, version);
  checkplatform();  // a platform that may not be taken over has drawn its warning; the file is converted all the same
  beginpart("version in the platform record");
  setplatformrecord(replacefield(platformrecord(), 3, '~', currentversion));
  return true;
}

}  // namespace tolvane
