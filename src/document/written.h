// Writing to a descriptor.
#pragma once

#include <string_view>

#include "document/ends.h"

namespace tolvane {

/// Writes all of the contents. Returns false, with errno set, on error.
bool writeall(int file, std::string_view contents);

/// Syncs a file. Also returns true if fsync(2) is not supported for it, or its file system is read-only. Returns false,
/// with errno set, on error.
bool sync(int file);

/// The error for contents that cannot be written.
Fatal cannotwrite();

}  // namespace tolvane
