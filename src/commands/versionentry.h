// The entry in which a configuration parameter file records its version.
#pragma once

#include "document/entries.h"

namespace tolvane {

/// The entry "Version" of "[ConfigFile]". Fatal when the line store has none.
inline const Line& versionentry() {
  const Line* const entry = find("[ConfigFile]", "Version");
  if (entry == nullptr) throw Fatal{"Invalid configuration file format"};
  return *entry;
}

}  // namespace tolvane
