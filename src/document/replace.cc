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
#include "document/ends.h"
#include "document/messages.h"
#include "document/uninterrupted.h"
#include "document/written.h"

namespace tolvane {

namespace {

/// Why names could not be changed: error numbers, 0 for none.
struct Refused {
  int replacing = 0;  // the original by the temporary file
  int keeping = 0;    // the original as the backup
};

bool renamed(const Original& original, const char* from, const char* to) {
  return renameat(original.directory(), from, original.directory(), to) == 0;
}

/// Removes a name as remove(3) does: an empty directory, too.
bool removed(const Original& original, const char* name) {
  return unlinkat(original.directory(), name, 0) == 0 ||
         (errno == EISDIR && unlinkat(original.directory(), name, AT_REMOVEDIR) == 0);
}

/// True if the name, symbolic links not followed, stands for another file than that, or for none any more.
bool standsforanother(const Original& original, const char* name, int file) {
  struct stat named = {};
  struct stat opened = {};
  if (fstatat(original.directory(), name, &named, AT_SYMLINK_NOFOLLOW) != 0) return errno == ENOENT;
  return fstat(file, &opened) == 0 && identity(named) != identity(opened);
}

/// Removes a stale temporary file. Waits for a run that still uses it. Returns false if something else has its name.
bool removestale(const Original& original, const Text& temporary) {
  const char* const name = original.nameof(temporary);
  struct stat status = {};
  while (fstatat(original.directory(), name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
    if (!S_ISREG(status.st_mode)) return false;
    const int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const Descriptor stale{openat(original.directory(), name, flags)};
    if (stale.open()) original.lock().add(stale.number(), temporary.c_str());
    if (stale.open() && standsforanother(original, name, stale.number())) continue;
    return removed(original, name);
  }
  return true;
}

/// Creates the temporary file and locks it: other runs may know nothing of this run's other locks. No descriptor, with
/// errno set, on error; EEXIST if another run was quicker.
Descriptor create(const Original& original, const char* name) {
  // Until it has its attributes the file is its writer's alone. O_EXCL follows no link that somebody puts there now.
  const mode_t mode = original.missing() ? 0666 : 0600;
  Descriptor file{openat(original.directory(), name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode)};
  if (!file.open()) return file;
  const bool taken = flock(file.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  if (!taken && !standsforanother(original, name, file.number())) return file;
  errno = EEXIST;
  return {};
}

/// Writes the temporary file. Fatal without leaving it behind.
void save(const Original& original, const Text& temporary, int file, const std::optional<Attributes>& attributes,
          std::string_view contents) {
  const char* const name = original.nameof(temporary);
  Descriptor copy{fcntl(file, F_DUPFD_CLOEXEC, 0)};  // to be closed, while the other one keeps the lock
  bool written = copy.open() && attributes && writeall(file, contents);
  written = written && (original.missing() || setattributes(file, *attributes)) && sync(file);
  written = copy.close() && written;
  const bool ours = !standsforanother(original, name, file);
  const bool current = original.stands(original.name());
  if (written && ours && current) return;
  if (ours) (void)removed(original, name);
  if (!written) throw cannotwrite();
  throw cannotopen(current ? temporary.c_str() : original.path());
}

/// Renames the temporary file over the original. Returns an error number, 0 for none.
int finish(const Original& original, const Text& temporary) {
  const char* const name = original.nameof(temporary);
  if (renamed(original, name, original.name())) return 0;
  // A directory stands in the way of the rename, but an empty one can be removed.
  if (errno == EISDIR && removed(original, original.name()) && renamed(original, name, original.name())) return 0;
  return errno;
}

/// True if the caller may remove names of the original from its directory. In a sticky one a link could be made that
/// nobody can remove.
bool mayremove(const Original& original) {
  struct stat directory = {};
  struct stat file = {};
  if (fstat(original.directory(), &directory) != 0 || (directory.st_mode & S_ISVTX) == 0) return true;
  return geteuid() == 0 || directory.st_uid == geteuid() ||
         (fstat(original.file(), &file) == 0 && file.st_uid == geteuid());
}

/// Gives the original the backup's name as a second one. Returns false if that cannot be done.
bool linked(const Original& original, const char* backup) {
  if (!mayremove(original)) return false;
  if (linkat(original.directory(), original.name(), original.directory(), backup, 0) != 0) return false;
  if (original.stands(backup)) return true;
  // An overlay gives the link another identity, or the name stood for another file at that moment.
  (void)removed(original, backup);
  return false;
}

/// Replaces the original, which has its second name.
Refused replacelinked(const Original& original, const Text& temporary, const char* backup) {
  const int error = finish(original, temporary);
  if (error != 0) (void)removed(original, backup);
  return {error, 0};
}

/// Renames the original to the backup's name, and the temporary file to the name of the original.
Refused replacerenamed(const Original& original, const Text& temporary, const char* backup) {
  Refused refused;
  const bool kept = renamed(original, original.name(), backup);
  if (!kept) refused.keeping = errno;
  refused.replacing = finish(original, temporary);
  if (kept && refused.replacing != 0) (void)renamed(original, backup, original.name());
  return refused;
}

Refused keep(const Original& original, const Text& temporary, const Text& backup) {
  const char* const old = original.nameof(backup);
  (void)removed(original, old);  // kept: with the suffix "tmp" this is what was just saved, and the original stays
  if (backup == temporary) return {};
  if (linked(original, old)) return replacelinked(original, temporary, old);
  if (original.stands(original.name())) return replacerenamed(original, temporary, old);
  (void)removed(original, original.nameof(temporary));
  throw cannotopen(original.path());
}

/// Writes the temporary file and lets the procedure replace the original by it.
template <typename Procedure>
Refused replaceby(const Original& original, const Text& temporary, std::string_view contents,
                  const Procedure& procedure) {
  // Read before anything is touched: from then on nothing needs memory until the files are in order.
  const std::optional<Attributes> attributes = original.missing() ? Attributes{} : attributesof(original.file());
  while (removestale(original, temporary)) {
    const Uninterrupted here;
    const Descriptor file = create(original, original.nameof(temporary));
    if (!file.open() && errno == EEXIST && !original.lock().expired()) continue;
    if (!file.open()) break;
    save(original, temporary, file.number(), attributes, contents);
    const Refused refused = procedure();
    (void)fsync(original.directory());
    return refused;
  }
  throw cannotopen(temporary.c_str());
}

void complainof(const Original& original, const Text& temporary, int error) {
  if (error == 0) return;
  complain({"cannot replace ", original.path(), ": ", std::strerror(error), "; the new contents are in ", temporary});
}

}  // namespace

Text temporaryname(const char* path) { return Text(std::string_view(path), "_tmp"); }
Text backupname(const char* path, std::string_view suffix) { return Text(std::string_view(path), '_', suffix); }

void replace(const Original& original, std::string_view contents) {
  const Text temporary = temporaryname(original.path());
  const Refused refused = replaceby(original, temporary, contents, [&] {
    return Refused{finish(original, temporary), 0};
  });
  complainof(original, temporary, refused.replacing);
}

void replacekeeping(const Original& original, std::string_view suffix, std::string_view contents) {
  const Text temporary = temporaryname(original.path());
  const Text backup = backupname(original.path(), suffix);
  const Refused refused = replaceby(original, temporary, contents, [&] { return keep(original, temporary, backup); });
  complainof(original, temporary, refused.replacing);
  if (refused.replacing != 0 || refused.keeping == 0) return;
  complain({"cannot keep the old contents as ", backup, ": ", std::strerror(refused.keeping), "; ", original.path(),
            " has the new contents"});
}

}  // namespace tolvane
