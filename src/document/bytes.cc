#include "document/bytes.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>

#include "document/ends.h"

namespace tolvane {

namespace {

/// The size of a regular file; 0 for any other.
std::size_t sizeinbytes(int file) {
  struct stat status = {};
  return fstat(file, &status) == 0 && S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
}

}  // namespace

int readall(int file, std::string& bytes, std::size_t limit) {
  constexpr std::size_t least = 4096;
  std::size_t length = 0;
  // One byte more than the file has, so that its end is seen without growing.
  bytes.resize(std::min(std::max(sizeinbytes(file) + 1, least), limit + 1));
  while (length <= limit) {
    if (length == bytes.size()) bytes.resize(std::min(2 * length, limit + 1));
    const ssize_t count = read(file, &bytes[length], bytes.size() - length);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      bytes.resize(length);
      return count == 0 ? 0 : errno;
    }
    length += static_cast<std::size_t>(count);
  }
  return 0;
}

void checkopen(int error, const char* path) {
  if (error == ENOMEM) throw std::bad_alloc{};
  if (error != 0) throw unreadable(path);
}

void checkread(int error, const char* path) {
  if (error != 0 && error != EISDIR) throw unreadable(path);  // half a file must not be taken for the whole one
}

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

bool sync(int file) {
  while (fsync(file) != 0) {
    if (errno == EINVAL || errno == ENOTSUP || errno == EROFS) return true;
    if (errno != EINTR) return false;
  }
  return true;
}

}  // namespace tolvane
