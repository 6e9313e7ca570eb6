#include "legacy/convertpair.h"

#include "document/entries.h"
#include "document/fields.h"
#include "document/observer.h"
#include "document/versions.h"
#include "ladder/convertconfig.h"
#include "legacy/convertnetwork.h"
#include "legacy/convertsystem.h"

namespace tolvane {

namespace {

/// The version of the legacy file in the line store. Fatal when it is not of the given type, word 1 of its file type.
Text versionof(std::string_view type, std::string_view message) {
  if (getfield(getvalue("[ConfigFile]", "FileType"), 1, ' ') != type) throw Fatal{message};
  return legacyversion();
}

}  // namespace

Text legacyversion() { return getfield(getvalue("[ConfigFile]", "FileType"), 2, ' '); }

LegacySystem convertsystemfile() {
  const Text version = versionof("Configuration", "Invalid system configuration file type");
  convertsystem(version);
  return {version, Aside{}};
}

void joinnetworkfile(LegacySystem& system) {
  convertnetwork(versionof("Network", "Invalid network configuration file type"));
  beginpart("section that describes the network file");
  delsection("[ConfigFile]");
  beginpart("both files joined");
  // Kept: lines of the network file before its first header now belong to the last section of the system file, and a
  // section of both stands twice.
  system.lines.putback();
  convertconfig(system.version);  // kept: the file is written whatever it answers
  beginpart("file type and version");
  delentry("[ConfigFile]", "FileType");
  saveentry("[ConfigFile]", "Version", currentversion);  // kept: behind a version that was there
}

}  // namespace tolvane
