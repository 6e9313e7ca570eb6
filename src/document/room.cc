#include "document/room.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstdint>
#include <cstdlib>

#include "document/linestore.h"

namespace tolvane {

namespace {

/// What a line takes with what malloc keeps before it.
constexpr std::size_t linesize = sizeof(Line) + 16;

/// What the steps add to any file of the oldest versions.
constexpr std::size_t added = 240;

/// How many lines begin with a character that makes them no blank ones: all lines of an ordinary file.
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
  (void)mallopt(M_MMAP_MAX, 0);
  (void)mallopt(M_TRIM_THRESHOLD, INT_MAX);
  (void)mallopt(M_TOP_PAD, 1 << 18);
}

void takeroom(std::string_view bytes) {
  const std::size_t size = (countlines(bytes) + added) * linesize;
  void* const room = std::malloc(size);
  if (room == nullptr) return;
  const auto page = static_cast<std::uintptr_t>(4096);
  const std::uintptr_t begin = (reinterpret_cast<std::uintptr_t>(room) + page - 1) & ~(page - 1);
  const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(room) + size) & ~(page - 1);
  if (begin < end) {
    if (size >= (4U << 20)) (void)madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
    (void)madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE);
  }
  std::free(room);
}

}  // namespace tolvane
