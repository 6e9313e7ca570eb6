// The platform record: the entry "overview" in "[config]", fields separated by "~". Field 1 is the name of the platform
// that wrote the file, field 2 its operating-system family, field 3 the version; further fields stay.
#pragma once

#include <string_view>

#include "document/entries.h"
#include "document/fields.h"

namespace tolvane {

/// The whole record, empty when it is missing.
inline Text platformrecord() { return getvalue("[config]", "overview"); }

inline Text platformname() { return getfield(platformrecord(), 1, '~'); }

inline Text platformfamily() { return getfield(platformrecord(), 2, '~'); }

/// Writes the record, if there is one.
inline void setplatformrecord(std::string_view record) { editentry("[config]", "overview", record); }

}  // namespace tolvane
