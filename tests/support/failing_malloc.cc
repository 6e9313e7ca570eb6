// Loaded ahead of the C library, lets the n-th allocation of tolvane or its preview fail; n stands in FAILING_MALLOC.
// At the end of the process the number of its allocations is written to the file that COUNTING_MALLOC names. Whatever
// else is run on the way to it, such as valgrind, allocates as ever.
#include <dlfcn.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

int number = 0;

bool meant() { return std::strncmp(program_invocation_short_name, "tolvane", 7) == 0; }

using Allocate = void* (*)(std::size_t);

__attribute__((destructor)) void report() {
  const int count = number;
  const char* const path = std::getenv("COUNTING_MALLOC");
  std::FILE* const file = path == nullptr || !meant() ? nullptr : std::fopen(path, "w");
  if (file == nullptr) return;
  (void)std::fprintf(file, "%d\n", count);
  (void)std::fclose(file);
}

}  // namespace

extern "C" void* malloc(std::size_t size) {
  // By its name, so that valgrind sees what is allocated.
  static const Allocate allocate = reinterpret_cast<Allocate>(dlsym(RTLD_NEXT, "malloc"));
  static const char* const wanted = std::getenv("FAILING_MALLOC");
  static const int failing = wanted == nullptr ? 0 : std::atoi(wanted);
  if (++number != failing || !meant()) return allocate(size);
  errno = ENOMEM;
  return nullptr;
}
