#include "commands/convert.h"

#include <cctype>

#include "document/ends.h"
#include "document/entries.h"
#include "document/observer.h"
#include "document/versions.h"
#include "ladder/convertconfig.h"

namespace tolvane {

namespace {

Text lettersanddigits(const Text& version) {
  Text suffix;
  for (const char character : version.view()) {
    if (std::isalnum(static_cast<unsigned char>(character)) != 0) suffix.append(character);
  }
  return suffix;
}

}  // namespace

const Line& versionentry() {
  const Line* const entry = find("[ConfigFile]", "Version");
  if (entry == nullptr) throw Fatal{"Invalid configuration file format"};
  return *entry;
}

std::optional<Text> convert() {
  const Text version{valueof(versionentry())};
  if (!convertconfig(version)) return {};
  beginpart("version of the file");
  editentry("[ConfigFile]", "Version", currentversion);
  return lettersanddigits(version);
}

}  // namespace tolvane
