// The names beside a file that is replaced, of its temporary file and of its backup: what may stand under them, and
// removing it.
#pragma once

#include <string_view>

#include "document/text.h"

namespace tolvane {

/// Return the names of the temporary file and of the backup of a file: its path and "_tmp"; its path, "_" and the
/// suffix. Throw TextTooLong if the name would be longer than 511 characters.
Text temporaryname(const char* path);
Text backupname(const char* path, std::string_view suffix);

/// Returns true if the new contents are lost. Kept: that is so if the backup has the name of the temporary file.
bool losescontents(const Text& temporary, const Text& backup);

/// What stands under a name, symbolic links not followed.
enum class Standing { nothing, regular, link, directory, other, toolong };

/// Looks a name up in a directory (a descriptor, or AT_FDCWD).
Standing standingunder(int directory, const char* name);

/// Returns true if a temporary file can be created there: a regular file is a stale one, which is removed first.
constexpr bool givesway(Standing standing) { return standing == Standing::nothing || standing == Standing::regular; }

/// Returns true if a backup replaces something. If the file is a symbolic link, the link itself becomes the backup.
constexpr bool replaces(Standing standing) { return standing != Standing::nothing && standing != Standing::toolong; }

/// Returns true if no backup can be made there: the name is too long, or removed() would fail.
bool preventsbackup(int directory, const char* name);

/// Removes a file or an empty directory, like remove(3). Returns false, with errno set, on error.
bool removed(int directory, const char* name);

}  // namespace tolvane
