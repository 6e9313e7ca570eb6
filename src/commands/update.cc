#include "commands/update.h"

#include <cctype>

#include "commands/versionentry.h"
#include "document/versions.h"
#include "ladder/convertconfig.h"

namespace tolvane {

namespace {

/// The letters and digits of a version.
Text backupsuffix(const Text& version) {
  Text suffix;
  for (const char character : version.view()) {
    if (std::isalnum(static_cast<unsigned char>(character)) != 0) suffix.append(character);
  }
  return suffix;
}

}  // namespace

int update(const char* path) {
  load(path);
  const Text version{valueof(versionentry())};
  if (!convertconfig(version)) return 1;
  editentry("[ConfigFile]", "Version", currentversion);
  backup(path, backupsuffix(version));
  return 1;
}

}  // namespace tolvane
