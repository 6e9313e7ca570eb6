// Replacing a file. The new contents are on the disk before any name changes, and the name of the file always refers to
// the old or the new file; replacekeeping() has one exception.
//
// Throws Fatal, "Cannot open file %s for output." or "Error writing output file", if the temporary file cannot be
// created, written or given its attributes, or if another program has replaced the original. The original is then
// unchanged, but a stale temporary file, and an older backup, may be gone. Signals are blocked while files change.
#pragma once

#include <string_view>

#include "document/original.h"

namespace tolvane {

/// Replaces the original: writes the contents to the temporary file and renames it. First waits for any run that still
/// uses the temporary file, and removes a stale one. Throws Fatal if that name belongs to anything but a regular file.
/// The new file gets the attributes of the original, and is never open to more users. If the original is missing, the
/// new file gets what any new file gets; if another run has created the original since, opens that. If the rename
/// fails, the temporary file stays, and standard error says so.
void replace(Original& original, std::string_view contents);

/// Replaces the original, and keeps it under its backup name, in place of an older backup. Links the backup before the
/// rename. If no link can be made, renames the original to the backup: its name is then missing for a moment. If that
/// fails too, replaces the original without a backup, and standard error says so. The suffix "tmp" would name the
/// temporary file: the new contents are then discarded, and no error is reported.
void replacekeeping(Original& original, std::string_view suffix, std::string_view contents);

}  // namespace tolvane
