#include "legacy/merge.h"

#include <utility>

#include "document/entries.h"
#include "document/fields.h"
#include "document/versions.h"
#include "document/watch.h"
#include "ladder/convertconfig.h"
#include "legacy/convertnetwork.h"
#include "legacy/convertsystem.h"

namespace tolvane {

Line* systemstart = nullptr;

namespace {

/// The version of the loaded legacy file. Fatal when it is not of the given type, word 1 of its file type.
Text versionof(std::string_view type, std::string_view message) {
  if (getfield(getvalue("[ConfigFile]", "FileType"), 1, ' ') != type) throw Fatal{message};
  return legacyversion();
}

/// Links the system file's lines before those of the store. Kept: lines of the network file that stand before its first
/// header so come to belong to the last section of the system file, and a section of both stands twice.
void join(Line* systemlast) {
  systemlast->next = start;
  (start == nullptr ? last : start->previous) = systemlast;
  start = std::exchange(systemstart, nullptr);
}

}  // namespace

Text legacyversion() { return getfield(getvalue("[ConfigFile]", "FileType"), 2, ' '); }

void convertpair(const char* systempath, const char* networkpath, const Load& loadfile) {
  loadfile(systempath);
  const Text systemversion = versionof("Configuration", "Invalid system configuration file type");
  convertsystem(systemversion);
  systemstart = std::exchange(start, nullptr);
  Line* const systemlast = std::exchange(last, nullptr);

  loadfile(networkpath);
  convertnetwork(versionof("Network", "Invalid network configuration file type"));
  watch.part({}, "section that describes the network file");
  delsection("[ConfigFile]");
  watch.part({}, "both files joined");
  join(systemlast);

  convertconfig(systemversion);  // kept: the file is written whatever it answers
  watch.part({}, "file type and version");
  delentry("[ConfigFile]", "FileType");
  saveentry("[ConfigFile]", "Version", currentversion);  // kept: behind a version that was there
}

int merge(const char* path, const char* systempath, const char* networkpath) {
  Lock lock{path, systempath, networkpath};
  convertpair(systempath, networkpath, [&lock](const char* name) {
    Original file = Original::opened(lock, name, Lock::Kind::shared);
    load(file);
  });
  Original target = Original::replaced(lock, path);
  output(target);
  return 1;
}

}  // namespace tolvane
