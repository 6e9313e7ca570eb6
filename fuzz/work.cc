#include "fuzz/work.h"

#include <link.h>

#include <algorithm>
#include <cstddef>

// The linker's names for the ends of the program's code.
extern "C" const char __executable_start;
extern "C" const char etext;

namespace {

std::uint64_t blocks = 0;
// By address from the start of the program on, null until they are asked for. Never freed: destructors at the end of
// the program enter blocks, too.
std::uint64_t* counts = nullptr;

std::size_t codesize() { return static_cast<std::size_t>(&etext - &__executable_start); }

void enter(const void* address) {
  ++blocks;
  if (counts == nullptr) return;
  const auto place = static_cast<std::size_t>(static_cast<const char*>(address) - &__executable_start);
  if (place < codesize()) ++counts[place];
}

/// How far from its addresses in the file the program was loaded.
std::uintptr_t displacement() {
  std::uintptr_t result = 0;
  const auto first = [](dl_phdr_info* program, std::size_t, void* displaced) {
    *static_cast<std::uintptr_t*>(displaced) = program->dlpi_addr;
    return 1;
  };
  dl_iterate_phdr(first, &result);
  return result;
}

}  // namespace

// The compiler puts a call of __sanitizer_cov_trace_pc into every basic block of instrumented code. The runtime of the
// fuzz targets brings one of its own, in whose place the linker puts ours.
#ifdef TOLVANE_WRAPPED
extern "C" void __wrap___sanitizer_cov_trace_pc();
extern "C" void __wrap___sanitizer_cov_trace_pc() { enter(__builtin_return_address(0)); }
#else
extern "C" void __sanitizer_cov_trace_pc();
extern "C" void __sanitizer_cov_trace_pc() { enter(__builtin_return_address(0)); }
#endif

std::uint64_t tolvane::workdone() { return blocks; }

void tolvane::countblocks() {
  if (counts == nullptr) counts = new std::uint64_t[codesize()];
  std::fill_n(counts, codesize(), 0);
}

tolvane::BlockCounts tolvane::blockcounts() {
  const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(&__executable_start) - displacement();
  BlockCounts result;
  if (counts == nullptr) return result;
  for (std::size_t place = 0; place < codesize(); ++place) {
    // The address is where the block goes on behind the call; the byte before belongs to the call.
    if (counts[place] != 0) result[first + place - 1] = counts[place];
  }
  return result;
}
