// Loaded ahead of the C library, lets the n-th allocation of a program fail; n stands in FAILING_MALLOC.
#include <cerrno>
#include <cstddef>
#include <cstdlib>

extern "C" {

void* __libc_malloc(std::size_t size);  // NOLINT: the C library's own name

void* malloc(std::size_t size) {
  static int left = -1;
  if (left < 0) {
    const char* const wanted = std::getenv("FAILING_MALLOC");
    left = wanted == nullptr ? 0 : std::atoi(wanted);
  }
  if (left > 0 && --left == 0) {
    errno = ENOMEM;
    return nullptr;
  }
  return __libc_malloc(size);
}
}
