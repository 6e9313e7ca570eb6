#include "document/room.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <memory>

#include "document/linestore.h"

namespace tolvane {

namespace {

/// What a line takes with what malloc keeps before it.
constexpr std::size_t linesize = sizeof(Line) + 16;

/// From so many bytes on it is worth while to ask for pages of 2 MiB, which the kernel has to look for.
constexpr std::size_t large = 4 << 20;

/// Lines that the steps add to a file of the oldest versions.
constexpr std::size_t added = 240;

/// Counts the lines that begin with a printable character: all but the blank ones of an ordinary file, and never one
/// that is not kept.
std::size_t countlines(std::string_view bytes) {
  std::size_t count = 0;
  while (!bytes.empty()) {
    if (bytes.front() > ' ') ++count;
    const std::size_t end = bytes.find('\n');
    if (end == std::string_view::npos) break;
    bytes.remove_prefix(end + 1);
  }
  return count;
}

}  // namespace

void keepmemory() {
  // Large blocks come from the heap, too, and what is freed at its end is not given back.
  (void)mallopt(M_MMAP_MAX, 0);
  (void)mallopt(M_TRIM_THRESHOLD, INT_MAX);
  (void)mallopt(M_TOP_PAD, 1 << 18);
}

void takeroom(std::string_view bytes) {
  const std::size_t size = (countlines(bytes) + added) * linesize;
  void* const room = std::malloc(size);
  const auto page = static_cast<std::size_t>(getpagesize());
  void* begin = room;
  std::size_t length = size;
  if (room != nullptr && std::align(page, page, begin, length) != nullptr) {
    length -= length % page;
    if (length >= large) (void)madvise(begin, length, MADV_HUGEPAGE);
    (void)madvise(begin, length, MADV_POPULATE_WRITE);
  }
  std::free(room);  // for the lines
}

}  // namespace tolvane
