#include "document/original.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "document/bytes.h"
#include "document/ends.h"

namespace tolvane {

namespace {

/// Returns true if the error says that the path leads to no file.
bool leadsnowhere(int error) { return error == ENOENT || error == ENOTDIR || error == ELOOP || error == ENAMETOOLONG; }

}  // namespace

Original::Original(Lock& lock, const char* path) : lock_(&lock), path_(path), directory_(lock.directory(path)) {
  const char* const slash = std::strrchr(path, '/');
  const char* const name = slash == nullptr ? path : slash + 1;
  // If there is no name, as in "directory/", or no open directory, look up the whole path.
  if (*name == '\0') directory_ = AT_FDCWD;
  if (directory_ != AT_FDCWD) prefix_ = static_cast<std::size_t>(name - path);
}

Original Original::opened(Lock& lock, const char* path, Lock::Kind kind) {
  Original original{lock, path};
  do {
    original.file_ = original.open(O_RDONLY);
    if (!original.file_.isopen()) checkopen(errno, path);
    if (fstat(original.file(), &original.status_) != 0) throw unreadable(path);
    if (!original.regular()) return notregular(std::move(original));
  } while (!original.lockedin(kind));
  return original;
}

/// Locks the opened file. Returns false, after a wait, if another run holds its lock or has replaced it: the caller
/// opens it again.
bool Original::lockedin(Lock::Kind kind) {
  if (!lock_->add(file(), path_, kind)) return false;
  if (isnamed(name())) return true;
  lock_->wait();
  return false;
}

/// Uses separate descriptors for reading and for identity (O_PATH). If this process held the read end of a FIFO open,
/// opening it for writing would not wait for a reader.
Original Original::notregular(Original original) {
  original.reading_ = std::exchange(original.file_, original.open(O_PATH));
  struct stat status = {};
  if (fstat(original.file(), &status) != 0 || identity(status) != identity(original.status_)) {
    original.file_ = Descriptor{};
  }
  return original;
}

Original Original::replaced(Lock& lock, const char* path) {
  Original original{lock, path};
  struct stat& status = original.status_;
  do {
    // Opening a device can have side effects, so only a regular file is opened for reading. O_PATH needs no permission.
    const bool regular = fstatat(original.directory_, original.name(), &status, 0) == 0 && original.regular();
    original.file_ = regular ? original.open(O_RDONLY | O_NONBLOCK) : Descriptor{};
    if (!original.file_.isopen()) original.file_ = original.open(O_PATH);
    original.missing_ = !original.file_.isopen() && leadsnowhere(errno);
    if (fstat(original.file(), &status) != 0) original.file_ = Descriptor{};
  } while (original.file_.isopen() && original.regular() && !original.lockedin(Lock::Kind::exclusive));
  return original;
}

Descriptor Original::open(int flags) const { return Descriptor{openat(directory_, name(), flags | O_CLOEXEC)}; }

std::string Original::bytes() {
  const Descriptor reading = std::move(reading_);  // closed at the end, see notregular()
  std::string bytes;
  checkread(readall(reading.isopen() ? reading.number() : file(), bytes), path_);
  return bytes;
}

bool Original::is(const struct stat& status) const {
  // Read again: a file of an overlay can get another inode when it is first written or linked.
  struct stat now = {};
  return identity(status) == identity(fstat(file(), &now) == 0 ? now : status_);
}

bool Original::isnamed(const char* name) const {
  struct stat status = {};
  if (fstatat(directory_, name, &status, 0) != 0) return missing() && leadsnowhere(errno);
  return !missing() && is(status);
}

}  // namespace tolvane
