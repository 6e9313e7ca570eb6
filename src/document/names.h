// The names beside a file that is replaced: its temporary file and its backup, and what may stand under them.
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

/// What stands under a name, symbolic links not followed. `full` is a directory that is not empty.
enum class Standing { nothing, regular, other, emptydirectory, full, toolong };

/// Looks a name up in a directory (a descriptor, or AT_FDCWD).
Standing standingunder(int directory, const char* name);

/// Returns true if a temporary file can be created there: a regular file is a stale one, which is removed first.
constexpr bool givesway(Standing standing) { return standing == Standing::nothing || standing == Standing::regular; }

/// Returns true if removed() would remove what stands there.
constexpr bool removable(Standing standing) {
  return standing == Standing::regular || standing == Standing::other || standing == Standing::emptydirectory;
}

/// Removes a file or an empty directory, like remove(3). Returns false, with errno set, on error.
bool removed(int directory, const char* name);

}  // namespace tolvane
