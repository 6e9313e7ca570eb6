#include "document/written.h"

#include <unistd.h>

#include <cerrno>

namespace tolvane {

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

Fatal cannotwrite() { return Fatal{"Error writing output file"}; }

}  // namespace tolvane
