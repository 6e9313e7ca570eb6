#include "document/replace.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>

#include "document/attributes.h"
#include "document/blockedsignals.h"
#include "document/bytes.h"
#include "document/ends.h"
#include "document/messages.h"
#include "document/names.h"

namespace tolvane {

namespace {

/// Error numbers of renames that failed, 0 for none.
struct Refused {
  int replacing = 0;  // of the temporary file to the original
  int keeping = 0;    // of the original to the backup
};

bool renamed(const Original& original, const char* from, const char* to) {
  return renameat(original.directory(), from, original.directory(), to) == 0;
}

/// Returns true if the name (not following symbolic links) refers to another file than that, or to no file any more.
bool namesanother(const Original& original, const char* name, int file) {
  struct stat named = {};
  struct stat opened = {};
  if (fstatat(original.directory(), name, &named, AT_SYMLINK_NOFOLLOW) != 0) return errno == ENOENT;
  return fstat(file, &opened) == 0 && identity(named) != identity(opened);
}

/// Waits for any run that still uses the temporary file, and removes a stale one. Returns false if the name does not
/// belong to a regular file, or cannot be removed.
bool removestale(const Original& original, const Text& temporary) {
  const char* const name = original.nameof(temporary);
  Standing standing = standingunder(original.directory(), name);
  for (; standing == Standing::regular; standing = standingunder(original.directory(), name)) {
    const int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const Descriptor stale{openat(original.directory(), name, flags)};
    if (stale.isopen() && !original.isnamed(name) && !original.lock().add(stale.number(), temporary.c_str())) continue;
    if (!stale.isopen() || !namesanother(original, name, stale.number())) {
      return removed(original.directory(), name) || errno == ENOENT;
    }
    original.lock().wait();
  }
  return givesway(standing);
}

/// Creates the temporary file and locks it: a run under the same inherited lock waits for nothing else. Returns no
/// descriptor, with errno set, on error; EEXIST if another run was faster.
Descriptor create(const Original& original, const char* name) {
  // Until it has its attributes, only the caller may open the file. O_EXCL does not follow a link.
  const mode_t mode = original.missing() ? 0666 : 0600;
  Descriptor file{openat(original.directory(), name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)};
  if (!file.isopen()) return file;
  const bool taken = flock(file.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  if (!taken && !namesanother(original, name, file.number())) return file;
  errno = EEXIST;
  return {};
}

/// Writes the temporary file. Removes it before it throws Fatal.
void save(const Original& original, const Text& temporary, int file, const std::optional<Attributes>& attributes,
          std::string_view contents) {
  const char* const name = original.nameof(temporary);
  Descriptor copy{fcntl(file, F_DUPFD_CLOEXEC, 0)};  // closed to get its error, while the other keeps the lock
  bool written = copy.isopen() && attributes && writeall(file, contents);
  written = written && (original.missing() || setattributes(file, *attributes)) && sync(file);
  written = copy.close() && written;
  const bool ours = !namesanother(original, name, file);
  const bool current = original.isnamed(original.name());
  if (written && ours && current) return;
  if (ours) (void)removed(original.directory(), name);
  if (!written) throw cannotwrite();
  throw cannotopen(current ? temporary.c_str() : original.path());
}

/// Renames the temporary file to the original. Returns an error number, 0 for none.
int finish(const Original& original, const Text& temporary) {
  const char* const name = original.nameof(temporary);
  if (renamed(original, name, original.name())) return 0;
  // rename(2) does not replace a directory, but an empty one can be removed.
  if (errno == EISDIR && removed(original.directory(), original.name()) && renamed(original, name, original.name()))
    return 0;
  return errno;
}

/// Returns true if the caller may remove a link to the original. In a sticky directory, the caller might be able to
/// create one, but not to remove it.
bool mayremove(const Original& original) {
  struct stat directory = {};
  struct stat file = {};
  if (fstat(original.directory(), &directory) != 0 || (directory.st_mode & S_ISVTX) == 0) return true;
  return geteuid() == 0 || directory.st_uid == geteuid() ||
         (fstat(original.file(), &file) == 0 && file.st_uid == geteuid());
}

/// Links the original to the backup name. Returns false on error.
bool linked(const Original& original, const char* backup) {
  if (!mayremove(original)) return false;
  if (linkat(original.directory(), original.name(), original.directory(), backup, 0) != 0) return false;
  if (original.isnamed(backup)) return true;
  // An overlay gives the link another inode, or the name referred to another file at that moment.
  (void)removed(original.directory(), backup);
  return false;
}

/// Replaces the original after it was linked to the backup name.
Refused replacelinked(const Original& original, const Text& temporary, const char* backup) {
  const int error = finish(original, temporary);
  if (error != 0) (void)removed(original.directory(), backup);
  return {error, 0};
}

/// Renames the original to the backup's name, and the temporary file to the name of the original.
Refused replacerenamed(const Original& original, const Text& temporary, const char* backup) {
  Refused refused;
  const bool moved = renamed(original, original.name(), backup);
  if (!moved) refused.keeping = errno;
  refused.replacing = finish(original, temporary);
  if (moved && refused.replacing != 0) (void)renamed(original, backup, original.name());
  return refused;
}

Refused keep(const Original& original, const Text& temporary, const Text& backup) {
  const char* const old = original.nameof(backup);
  (void)removed(original.directory(),
                old);  // kept: with the suffix "tmp" this is what was just saved, and the original stays
  if (losescontents(temporary, backup)) return {};
  if (linked(original, old)) return replacelinked(original, temporary, old);
  if (original.isnamed(original.name())) return replacerenamed(original, temporary, old);
  (void)removed(original.directory(), original.nameof(temporary));
  throw cannotopen(original.path());
}

/// Returns the attributes that the new file gets; without a meaning if the original is missing.
std::optional<Attributes> attributesfornew(const Original& original) {
  return original.missing() ? Attributes{} : attributesof(original.file());
}

/// Creates and writes the temporary file, and calls the procedure to replace the original by it.
template <typename Procedure>
void replaceby(Original& original, const Text& temporary, std::string_view contents, const Procedure& procedure) {
  // Read now: no memory may be allocated between creating the temporary file and the last rename.
  std::optional<Attributes> attributes = attributesfornew(original);
  while (removestale(original, temporary)) {
    if (original.missing() && !original.isnamed(original.name())) {
      // Another run under the same inherited lock has created the file.
      original = Original::replaced(original.lock(), original.path());
      attributes = attributesfornew(original);
    }
    const BlockedSignals here;
    const Descriptor file = create(original, original.nameof(temporary));
    if (!file.isopen() && errno != EEXIST) break;
    if (!file.isopen()) {
      original.lock().wait();
      continue;
    }
    save(original, temporary, file.number(), attributes, contents);
    procedure();
    (void)fsync(original.directory());
    return;
  }
  throw cannotopen(temporary.c_str());
}

void complainof(const Original& original, const Text& temporary, int error) {
  if (error == 0) return;
  complain({"cannot replace ", original.path(), ": ", std::strerror(error), "; the new contents are in ", temporary});
}

}  // namespace

void replace(Original& original, std::string_view contents) {
  const Text temporary = temporaryname(original.path());
  replaceby(original, temporary, contents, [&] { complainof(original, temporary, finish(original, temporary)); });
}

void replacekeeping(Original& original, std::string_view suffix, std::string_view contents) {
  const Text temporary = temporaryname(original.path());
  const Text backup = backupname(original.path(), suffix);
  replaceby(original, temporary, contents, [&] {
    const Refused refused = keep(original, temporary, backup);
    complainof(original, temporary, refused.replacing);
    if (refused.replacing != 0 || refused.keeping == 0) return;
    complain({"cannot create the backup ", backup, ": ", std::strerror(refused.keeping), "; ", original.path(),
              " has the new contents"});
  });
}

}  // namespace tolvane
