// The conversion of a configuration parameter file in the line store, as `update` does it.
#pragma once

#include <optional>

#include "document/linestore.h"

namespace tolvane {

/// The entry "Version" of "[ConfigFile]". Fatal when the line store has none.
const Line& versionentry();

/// Brings the line store up to the current version. Returns the suffix of the backup, the letters and digits of the old
/// version; none when there is nothing to write. Fatal when the file does not record its version, or names an unknown
/// platform. A line that would be longer than 511 characters throws TextTooLong.
std::optional<Text> convert();

}  // namespace tolvane
