#include "legacy/merge.h"

#include <utility>

#include "document/entries.h"
#include "document/fields.h"
#include "document/versions.h"
#include "ladder/convertconfig.h"
#include "legacy/convertnetwork.h"
#include "legacy/convertsystem.h"

namespace tolvane {

Line* systemstart = nullptr;

namespace {

/// The version of the loaded legacy file, word 2 of its file type; empty when it names none. Fatal when word 1 is not
/// the given type.
Text legacyversion(std::string_view type, std::string_view message) {
  const Text filetype = getvalue("[ConfigFile]", "FileType");
  if (getfield(filetype, 1, ' ') != type) throw Fatal{message};
  return getfield(filetype, 2, ' ');
}

/// Links the system file's lines before those of the store. Kept: lines of the network file that stand before its first
/// header so come to belong to the last section of the system file, and a section of both stands twice.
void join(Line* systemlast) {
  systemlast->next = start;
  (start == nullptr ? last : start->previous) = systemlast;
  start = std::exchange(systemstart, nullptr);
}

}  // namespace

int merge(const char* path, const char* systempath, const char* networkpath) {
  load(systempath);
  const Text systemversion = legacyversion("Configuration", "Invalid system configuration file type");
  convertsystem(systemversion);
  systemstart = std::exchange(start, nullptr);
  Line* const systemlast = std::exchange(last, nullptr);

  load(networkpath);
  convertnetwork(legacyversion("Network", "Invalid network configuration file type"));
  delsection("[ConfigFile]");
  join(systemlast);

  convertconfig(systemversion);  // kept: the file is written whatever it answers
  delentry("[ConfigFile]", "FileType");
  saveentry("[ConfigFile]", "Version", currentversion);  // kept: behind a version that was there
  output(path);
  return 1;
}

}  // namespace tolvane
