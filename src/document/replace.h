// Replacing a file so that nothing is lost: the new contents are on the disk before anything else is touched, and the
// file is there at every moment, old or new.
//
// Fatal, "Cannot open file %s for output." or "Error writing output file", when the temporary file cannot be created,
// or not get all of its contents and attributes, or when the name of the original stands for another file by now.
// Nothing is touched then. While files are touched, signals wait.
#pragma once

#include <string_view>

#include "document/original.h"

namespace tolvane {

/// The names of the temporary file and of the backup of a file: its path and "_tmp"; its path, "_" and the suffix. They
/// have at most 511 characters.
Text temporaryname(const char* path);
Text backupname(const char* path, std::string_view suffix);

/// Replaces the original by the contents: writes them to the temporary file and renames that over the original. Removes
/// a stale temporary file before, after a wait for any run that still uses it; anything but a regular file of that name
/// is not written through but Fatal. The new file gets the attributes of the original, and is never open to more users;
/// where the original is missing it gets what any new file gets. If the original cannot be replaced, the temporary file
/// stays, and standard error says so.
void replace(const Original& original, std::string_view contents);

/// The same, and keeps the original under its backup name, in place of an older backup. The backup is there before the
/// original is replaced: it is a second name of the same file. Where no such link can be made, the original is renamed,
/// and its name is missing for a moment. If there can be no backup at all, the original is replaced all the same, and
/// standard error says so. The suffix "tmp" would name the temporary file: the original then stays as it is.
void replacekeeping(const Original& original, std::string_view suffix, std::string_view contents);

}  // namespace tolvane
