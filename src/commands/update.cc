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

/// Converts the store. As `convert`.
bool convertstore(Text& backupsuffix) {
  const Text version{valueof(versionentry())};
  if (!convertconfig(version)) return false;
  watch.part({}, "version of the file");
  editentry("[ConfigFile]", "Version", currentversion);
  backupsuffix = lettersanddigits(version);
  return true;
}

}  // namespace

bool convert(const char* path, Text& backupsuffix) {
  load(path);
  return convertstore(backupsuffix);
}

int update(const char* path) {
  Lock lock{path};
  Original original = Original::opened(lock, path);
  load(original);
  if (Text suffix; convertstore(suffix)) backup(original, suffix);
  return 1;
}

}  // namespace tolvane
