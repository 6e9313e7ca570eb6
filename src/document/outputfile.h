// Writing files so that nothing is lost: what is written is on the disk before anything else is touched, and a write
// that fails leaves the file that was there.
//
// Both procedures write the contents as they are. Fatal, "Cannot open file %s for output." or "Error writing output
// file", when the file cannot be opened or not all of it be written and synced, or the mode or access list of the file
// that it replaces be set.
#pragma once

#include <string_view>

#include "document/ends.h"

namespace tolvane {

/// How a run ends whose file cannot be opened for writing.
Fatal cannotopen(const char* path);

/// Creates the file, in place of a stale plain one of that name; anything else of that name, such as a symbolic link,
/// is not written through but Fatal. The file gets the mode and, as far as the caller may set them, the owner, the
/// group and the extended attributes of the model, and is never open to more people than that; where there is no model
/// it gets what any new file gets. A file that could not be written whole is removed.
void createlike(const char* model, const char* path, std::string_view contents);

/// Writes straight over the file, or creates it. The room is reserved before the old contents of a plain file are
/// touched, so that a full disk or a limit leaves it as it was. When something else fails they are put back, as far as
/// the disk still takes them; when only closing fails the new contents stand there, whole. What cannot be synced at
/// all, such as a pipe, need not be.
void overwrite(const char* path, std::string_view contents);

/// Syncs the folder of a path, so that what was renamed in it stays renamed. Failures are ignored.
void syncfolder(std::string_view path);

}  // namespace tolvane
