// The conversion of the two files of the legacy layout, one after the other in the line store: first the system file is
// loaded and converted, then the network file, to which it is joined.
#pragma once

#include "document/linestore.h"

namespace tolvane {

/// The version of the legacy file in the line store, word 2 of its file type; empty when it names none.
Text legacyversion();

/// The converted system file while the line store is for the network file.
struct LegacySystem {
  Text version;  // of the file as it was read
  Aside lines;
};

/// Converts the system file in the line store and takes its lines out. Fatal when it is not of its type. A line that
/// would be longer than 511 characters throws TextTooLong.
LegacySystem convertsystemfile();

/// Converts the network file in the line store, puts the system file's lines before it, and brings the whole to the
/// current version. Fatal when it is not of its type or the platform is unknown. A line that would be longer than 511
/// characters throws TextTooLong.
void joinnetworkfile(LegacySystem& system);

}  // namespace tolvane
