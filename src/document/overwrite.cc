#include "document/overwrite.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "document/blockedsignals.h"
#include "document/bytes.h"
#include "document/ends.h"

namespace tolvane {

namespace {

/// Checks RLIMIT_FSIZE, which fallocate() does not.
bool allowed(std::size_t size) {
  rlimit limit = {};
  return getrlimit(RLIMIT_FSIZE, &limit) != 0 || size <= limit.rlim_cur;
}

/// Reserves space for that many bytes without changing the file's size. Also returns true if the file system does not
/// support fallocate().
bool reserve(int file, std::size_t size) {
  while (fallocate(file, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) != 0) {
    if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP) return true;
    if (errno != EINTR) return false;
  }
  return true;
}

/// Overwrites a regular file with the contents, truncates it and syncs it.
bool rewrite(int file, std::string_view contents) {
  return lseek(file, 0, SEEK_SET) == 0 && writeall(file, contents) &&
         ftruncate(file, static_cast<off_t>(contents.size())) == 0 && sync(file);
}

bool overwriteregular(int file, std::string_view contents) {
  std::string old;
  if (readall(file, old) != 0) return false;
  const BlockedSignals here;
  if (!allowed(contents.size()) || !reserve(file, contents.size())) return false;
  if (rewrite(file, contents)) return true;
  (void)rewrite(file, old);
  return false;
}

/// Opens the original for writing; a regular file also for reading. A FIFO opened for both would not wait for a reader.
/// Returns no descriptor if the original cannot be opened, or its name refers to another file.
Descriptor openover(const Original& original) {
  struct stat status = {};
  const int flags = (original.regular() ? O_RDWR : O_WRONLY) | O_CLOEXEC;
  Descriptor file{openat(original.directory(), original.name(), flags)};
  const bool same = file.isopen() && fstat(file.number(), &status) == 0 && original.is(status);
  return same ? std::move(file) : Descriptor{};
}

}  // namespace

void overwrite(const Original& original, std::string_view contents) {
  Descriptor file = openover(original);
  if (!file.isopen()) throw cannotopen(original.path());
  bool written = original.regular() ? overwriteregular(file.number(), contents)
                                    : writeall(file.number(), contents) && sync(file.number());
  written = file.close() && written;
  if (!written) throw cannotwrite();
}

}  // namespace tolvane
