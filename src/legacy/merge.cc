#include "legacy/merge.h"

#include "document/entries.h"
#include "document/fields.h"
#include "document/versions.h"
#include "ladder/convertconfig.h"
#include "legacy/convertnetwork.h"
#include "legacy/convertsystem.h"

namespace tolvane {

namespace {

/// The version of the loaded legacy file, word 2 of its file type; empty when it names none. Fatal when word 1 is not
/// the given type.
Text legacyversion(std::string_view type, std::string_view message) {
  const Text filetype = getvalue("[ConfigFile]", "FileType");
  if (getfield(filetype, 1, ' ') != type) throw Fatal{message};
  return getfield(filetype, 2, ' ');
}

/// Links the lines from head to tail before those of the store.
void joinbefore(Line* head, Line* tail) {
  tail->next = start;
  (start == nullptr ? last : start->previous) = tail;
  start = head;
}

}  // namespace

int merge(const char* path, const char* systempath, const char* networkpath) {
  load(systempath);
  const Text systemversion = legacyversion("Configuration", "Invalid system configuration file type");
  convertsystem(systemversion);
  Line* const head = start;
  Line* const tail = last;

  load(networkpath);
  convertnetwork(legacyversion("Network", "Invalid network configuration file type"));
  delsection("[ConfigFile]");
  joinbefore(head, tail);

  convertconfig(systemversion);  // the file is written whatever it answers
  delentry("[ConfigFile]", "FileType");
  saveentry("[ConfigFile]", "Version", currentversion);
  output(path);
  return 1;
}

}  // namespace tolvane
