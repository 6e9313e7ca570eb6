// Writing files so that nothing is lost: new contents are on the disk before anything else is touched, and a write that
// fails leaves the file that was there. While files are touched, signals wait.
//
// Fatal, "Cannot open file %s for output." or "Error writing output file", when a file cannot be opened for writing, or
// when its contents or attributes cannot all be written and synced; also when the name of the original stands for
// another file by now. Nothing is touched then.
#pragma once

#include <string_view>

#include "document/original.h"

namespace tolvane {

/// The names of the temporary file and of the backup of a file: its path and "_tmp", its path, "_" and the suffix.
/// They have at most 511 characters.
Text temporaryname(const char* path);
Text backupname(const char* path, std::string_view suffix);

/// Replaces the original by the contents: writes them to the temporary file, in place of a stale one, and renames that
/// over the original. Anything but a regular file of the temporary name is not written through but Fatal. The new file
/// gets the attributes of the original, and is never open to more users; where the original is missing it gets what any
/// new file gets. If the original cannot be replaced, the temporary file stays, and standard error says so.
void replace(const Original& original, std::string_view contents);

/// The same, and keeps the original under its backup name, in place of an older backup. The backup is there before the
/// original is replaced: it is a second name of the same file. Where no such link can be made, the original is renamed
/// and its name is missing for a moment. If the backup cannot be made at all, the original is replaced all the same,
/// and standard error says so. The suffix "tmp" would name the temporary file: the original then stays as it is.
void replacekeeping(const Original& original, std::string_view suffix, std::string_view contents);

/// Writes straight over the original, whose name still has to stand for it. The room is reserved before the old
/// contents of a regular file are touched, so that a full disk or a limit leaves it as it was. When something else
/// fails the old contents are put back, as far as the disk still takes them; when only closing fails the new contents
/// stay, whole. What cannot be synced at all, such as a pipe, need not be.
void overwrite(const Original& original, std::string_view contents);

}  // namespace tolvane
