#include "ladder/convertconfig.h"

#include "document/fields.h"
#include "ladder/check_platupg.h"
#include "ladder/ladder.h"
#include "ladder/platformrecord.h"

namespace tolvane {

namespace {

bool checkplatform() {
  watch.part({}, "platform check");
  return check_platupg();
}

}  // namespace

bool convertconfig(std::string_view version) {
  // Kept: what the check changes in a file of an unknown version gets that file the current version, without a step.
  if (!versionolder(currentversion, version)) return checkplatform();
  climb(ladder, version);
  checkplatform();  // a platform that may not be taken over has drawn its warning; the file is converted all the same
  watch.part({}, "version in the platform record");
  setplatformrecord(replacefield(platformrecord(), 3, '~', currentversion));
  return true;
}

}  // namespace tolvane
