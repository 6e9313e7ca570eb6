#include "commands/update.h"

#include <cctype>

#include "commands/versionentry.h"
#include "document/versions.h"
#include "document/watch.h"
#include "ladder/convertconfig.h"

namespace tolvane {

namespace {

/// The letters and digits of a version.
Text lettersanddigits(const Text& version) {
  Text suffix;
  for (const char character : version.view()) {
    if (std::isalnum(static_cast<unsigned char>(character)) != 0) suffix.append(character);
  }
  return suffix;
}

}  // namespace

bool convert(const char* path, Text& backupsuffix) {
  load(path);
  const Text version{valueof(versionentry())};
  if (!convertconfig(version)) return false;
  watch.part({}, "version of the file");
  editentry("[ConfigFile]", "Version", currentversion);
  backupsuffix = lettersanddigits(version);
  return true;
}

int update(const char* path) {
  if (Text suffix; convert(path, suffix)) backup(path, suffix);
  return 1;
}

}  // namespace tolvane
