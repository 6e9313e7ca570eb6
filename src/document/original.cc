#include "document/original.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "document/ends.h"

namespace tolvane {

Original::Original(const Lock& lock, const char* path) : path_(path), directory_(lock.directory()), prefix_(0) {
  const char* const slash = std::strrchr(path, '/');
  const char* const name = slash == nullptr ? path : slash + 1;
  // Without a name, as in "directory/", or without its directory the path is looked up as it stands.
  if (*name == '\0') directory_ = AT_FDCWD;
  if (directory_ != AT_FDCWD) prefix_ = static_cast<std::size_t>(name - path);
}

Original Original::opened(const Lock& lock, const char* path) {
  while (true) {
    Original original{lock, path};
    original.file_ = original.open(O_RDONLY);
    if (!original.file_.open() && errno == ENOMEM) throw std::bad_alloc{};
    if (fstat(original.file(), &original.status_) != 0) throw unreadable(path);
    if (!original.regular()) return notregular(std::move(original));
    lock.add(original.file(), path);
    if (original.stands(original.name()) || lock.expired()) return original;
    // Another run replaced it before it was locked.
  }
}

/// Keeps apart what reads the file, for a pipe that is still open for reading does not wait for another reader.
Original Original::notregular(Original original) {
  original.reading_ = std::exchange(original.file_, original.open(O_PATH));
  struct stat status = {};
  if (fstat(original.file(), &status) != 0 || !original.is(status)) original.file_ = Descriptor{};
  return original;
}

Original Original::replaced(const Lock& lock, const char* path) {
  Original original{lock, path};
  struct stat& status = original.status_;
  // Only a regular file is opened for reading, which sets off nothing. O_PATH needs no right to read.
  const bool regular = fstatat(original.directory_, original.name(), &status, 0) == 0 && original.regular();
  if (regular) original.file_ = original.open(O_RDONLY | O_NONBLOCK);
  if (!original.file_.open()) original.file_ = original.open(O_PATH);
  original.missing_ = !original.file_.open() && errno == ENOENT;
  if (fstat(original.file(), &status) != 0) original.file_ = Descriptor{};
  return original;
}

Descriptor Original::open(int flags) const { return Descriptor{openat(directory_, name(), flags | O_CLOEXEC)}; }

std::FILE* Original::stream() {
  if (!reading_.open()) reading_ = Descriptor{fcntl(file(), F_DUPFD_CLOEXEC, 0)};
  std::FILE* const stream = fdopen(reading_.number(), "r");
  if (stream != nullptr) reading_.release();
  return stream;
}

bool Original::standsforanother(const char* name) const {
  struct stat status = {};
  return fstatat(directory_, name, &status, 0) == 0 && !is(status);
}

bool Original::stands(const char* name) const {
  struct stat status = {};
  if (fstatat(directory_, name, &status, 0) != 0) return missing() && errno == ENOENT;
  return !missing() && is(status);
}

}  // namespace tolvane
