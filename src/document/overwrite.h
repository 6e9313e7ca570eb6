// Writing straight over a file so that nothing is lost: a write that fails leaves the old contents.
#pragma once

#include <string_view>

#include "document/original.h"

namespace tolvane {

/// Writes straight over the original. Fatal, "Cannot open file %s for output." or "Error writing output file", when the
/// file cannot be opened for writing, when its name stands for another file by now, or when not all of the contents can
/// be written and synced.
///
/// The room is reserved before the old contents of a regular file are touched, so that a full disk or a limit leaves it
/// as it was. When something else fails the old contents are put back, as far as the disk still takes them; when only
/// closing fails the new contents stay, whole. Signals wait from then on. What cannot be synced at all, such as a pipe,
/// need not be.
void overwrite(const Original& original, std::string_view contents);

}  // namespace tolvane
