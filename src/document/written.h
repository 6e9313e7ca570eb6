// Writing to a descriptor.
#pragma once

#include <string_view>

#include "document/ends.h"

namespace tolvane {

/// Writes all of the contents. Returns false, with errno set, on error.
bool writeall(int file, std::string_view contents);

/// Returns true when the file is on its disk, or on none.
bool sync(int file);

/// The error for contents that cannot be written.
Fatal cannotwrite();

}  // namespace tolvane
