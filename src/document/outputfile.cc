#include "document/outputfile.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "document/attributes.h"
#include "document/ends.h"
#include "document/messages.h"
#include "document/uninterrupted.h"

namespace tolvane {

namespace {

Fatal cannotwrite() { return Fatal{"Error writing output file"}; }

bool writeall(int file, std::string_view contents) {
  while (!contents.empty()) {
    const ssize_t written = write(file, contents.data(), contents.size());
    if (written >= 0) {
      contents.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

/// True when the file is on its disk, or on none.
bool sync(int file) {
  while (fsync(file) != 0) {
    if (errno == EINVAL || errno == ENOTSUP || errno == EROFS) return true;
    if (errno != EINTR) return false;
  }
  return true;
}

bool renamed(const Original& original, const char* from, const char* to) {
  return renameat(original.directory(), from, original.directory(), to) == 0;
}

/// Removes a name as remove(3) does: an empty directory, too.
bool removed(const Original& original, const char* name) {
  return unlinkat(original.directory(), name, 0) == 0 ||
         (errno == EISDIR && unlinkat(original.directory(), name, AT_REMOVEDIR) == 0);
}

/// Makes room for the temporary file. Returns false if something else than a stale one has its name.
bool removestale(const Original& original, const char* name) {
  struct stat status = {};
  if (fstatat(original.directory(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) return true;
  return S_ISREG(status.st_mode) && removed(original, name);
}

/// Writes the temporary file with the attributes of the original. Leaves nothing behind when it is Fatal.
void savetemporary(const Original& original, const Text& temporary, std::string_view contents) {
  const char* const name = original.nameof(temporary);
  // Read before the file is created: from then on nothing needs memory until it is in order.
  const std::optional<Attributes> attributes = original.missing() ? Attributes{} : attributesof(original.file());
  // Until it has its attributes the file is its writer's alone. O_EXCL follows no link that somebody puts there now.
  const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  Descriptor file;
  if (removestale(original, name)) {
    file = Descriptor{openat(original.directory(), name, flags, original.missing() ? 0666 : 0600)};
  }
  if (!file.open()) throw cannotopen(temporary.c_str());
  bool written = attributes && writeall(file.number(), contents);
  written = written && (original.missing() || setattributes(file.number(), *attributes)) && sync(file.number());
  written = file.close() && written;
  const bool current = original.stands(original.name());
  if (written && current) return;
  (void)removed(original, name);
  throw written ? cannotopen(original.path()) : cannotwrite();
}

/// Renames the temporary file over the original. Returns false after a line on standard error if that cannot be done.
bool finish(const Original& original, const Text& temporary) {
  const char* const name = original.nameof(temporary);
  if (renamed(original, name, original.name())) return true;
  // A directory stands in the way of the rename, but an empty one can be removed.
  if (errno == EISDIR && removed(original, original.name()) && renamed(original, name, original.name())) return true;
  complain({"cannot replace ", original.path(), ": ", std::strerror(errno), "; the new contents are in ", temporary});
  return false;
}

/// Gives the original its backup name as a second one. Returns false if that cannot be done.
bool linked(const Original& original, const char* backup) {
  return linkat(original.directory(), original.name(), original.directory(), backup, 0) == 0;
}

/// Renames the original to its backup name, and the temporary file to the name of the original.
void replacebyrenames(const Original& original, const Text& temporary, const Text& backup) {
  const char* const old = original.nameof(backup);
  const bool kept = renamed(original, original.name(), old);
  const int error = errno;
  if (!finish(original, temporary)) {
    if (kept) (void)renamed(original, old, original.name());
  } else if (!kept) {
    complain({"cannot keep the old contents as ", backup, ": ", std::strerror(error), "; ", original.path(),
              " has the new contents"});
  }
}

/// Reads what is left of a file, of about that many bytes.
bool readall(int file, std::size_t size, std::string& contents) {
  contents.resize(size + 1);  // one more, so that its end is seen without growing
  std::size_t length = 0;
  while (true) {
    const ssize_t count = read(file, &contents[length], contents.size() - length);
    if (count == 0) break;
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) length += static_cast<std::size_t>(count);
    if (length == contents.size()) contents.resize(2 * length);
  }
  contents.resize(length);
  return true;
}

/// Whether this process may write a file of that many bytes. Reserving room does not ask.
bool allowed(std::size_t size) {
  rlimit limit = {};
  return getrlimit(RLIMIT_FSIZE, &limit) != 0 || size <= limit.rlim_cur;
}

/// Reserves the room for that many bytes; the file stays as long as it is. Where nothing can be reserved, true.
bool reserve(int file, std::size_t size) {
  while (fallocate(file, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) != 0) {
    if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP) return true;
    if (errno != EINTR) return false;
  }
  return true;
}

/// Makes the contents those of a regular file.
bool rewrite(int file, std::string_view contents) {
  return lseek(file, 0, SEEK_SET) == 0 && writeall(file, contents) &&
         ftruncate(file, static_cast<off_t>(contents.size())) == 0 && sync(file);
}

bool overwriteregular(int file, std::size_t size, std::string_view contents) {
  std::string old;
  if (!readall(file, size, old)) return false;
  const Uninterrupted here;
  if (!allowed(contents.size()) || !reserve(file, contents.size())) return false;
  if (rewrite(file, contents)) return true;
  (void)rewrite(file, old);
  return false;
}

/// Opens the original to write over it, and a regular file also to read it: a pipe opened for both would wait for no
/// reader. No descriptor if it cannot be opened, or is another file by now.
Descriptor openover(const Original& original, struct stat& status) {
  const int flags = (original.regular() ? O_RDWR : O_WRONLY) | O_CLOEXEC;
  Descriptor file{openat(original.directory(), original.name(), flags)};
  const bool same = file.open() && fstat(file.number(), &status) == 0 && original.is(status);
  return same ? std::move(file) : Descriptor{};
}

}  // namespace

Text temporaryname(const char* path) { return Text(std::string_view(path), "_tmp"); }
Text backupname(const char* path, std::string_view suffix) { return Text(std::string_view(path), '_', suffix); }

void replace(const Original& original, std::string_view contents) {
  const Text temporary = temporaryname(original.path());
  const Uninterrupted here;
  savetemporary(original, temporary, contents);
  finish(original, temporary);
  (void)fsync(original.directory());
}

void replacekeeping(const Original& original, std::string_view suffix, std::string_view contents) {
  const Text temporary = temporaryname(original.path());
  const Text backup = backupname(original.path(), suffix);
  const char* const old = original.nameof(backup);
  const Uninterrupted here;
  savetemporary(original, temporary, contents);
  (void)removed(original, old);  // kept: with the suffix "tmp" this is what was just saved, and the original stays
  if (backup == temporary) return;
  if (!linked(original, old)) {
    replacebyrenames(original, temporary, backup);
  } else if (original.standsforanother(old)) {
    // The name of the original stood for another file at that moment.
    (void)removed(original, old);
    (void)removed(original, original.nameof(temporary));
    throw cannotopen(original.path());
  } else if (!finish(original, temporary)) {
    (void)removed(original, old);
  }
  (void)fsync(original.directory());
}

void overwrite(const Original& original, std::string_view contents) {
  struct stat status = {};
  Descriptor file = openover(original, status);
  if (!file.open()) throw cannotopen(original.path());
  bool written = original.regular()
                     ? overwriteregular(file.number(), static_cast<std::size_t>(status.st_size), contents)
                     : writeall(file.number(), contents) && sync(file.number());
  written = file.close() && written;
  if (!written) throw cannotwrite();
}

}  // namespace tolvane
