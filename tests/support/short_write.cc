// Loaded ahead of the C library, lets each write take less than it was asked to: SHORT_WRITE holds the most bytes that
// one takes, or "half". After as many bytes as SHORT_WRITE_ROOM says one write, once, fails with ENOSPC.
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace {

std::size_t most(std::size_t asked) {
  const char* const wanted = std::getenv("SHORT_WRITE");
  if (wanted == nullptr) return asked;
  if (std::strcmp(wanted, "half") == 0) return std::max<std::size_t>(asked / 2, 1);
  return std::strtoul(wanted, nullptr, 10);
}

}  // namespace

extern "C" ssize_t write(int file, const void* bytes, std::size_t asked) {
  static bool failed = std::getenv("SHORT_WRITE_ROOM") == nullptr;
  static std::size_t room = failed ? 0 : std::strtoul(std::getenv("SHORT_WRITE_ROOM"), nullptr, 10);
  std::size_t size = std::min(asked, most(asked));
  if (!failed) {
    if (room == 0 && asked > 0) {
      failed = true;
      errno = ENOSPC;
      return -1;
    }
    size = std::min(size, room);
    room -= size;
  }
  return syscall(SYS_write, file, bytes, size);
}
