// Overwriting a file in place. If a write fails, tries to restore the old contents.
#pragma once

#include <string_view>

#include "document/original.h"

namespace tolvane {

/// Overwrites the original in place. Throws Fatal, "Cannot open file %s for output." or "Error writing output file", if
/// the file cannot be opened for writing, if its name refers to another file by now, or if not all of the contents can
/// be written and synced.
///
/// For a regular file, reserves the space first where the file system supports fallocate(2), so that a full disk or a
/// limit changes nothing. Blocks signals from then until the file is synced. If writing or syncing fails, writes the
/// old contents again. If only close(2) fails, the new contents stay. A file that does not support fsync(2), such as a
/// FIFO, is not synced.
void overwrite(const Original& original, std::string_view contents);

}  // namespace tolvane
