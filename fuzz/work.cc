#include "fuzz/work.h"

namespace {

std::uint64_t blocks = 0;

}  // namespace

// The compiler puts a call of __sanitizer_cov_trace_pc into every basic block of instrumented code. The runtime of the
// fuzz targets brings one of its own, in whose place the linker puts ours.
#ifdef TOLVANE_WRAPPED
extern "C" void __wrap___sanitizer_cov_trace_pc();
extern "C" void __wrap___sanitizer_cov_trace_pc() { ++blocks; }
#else
extern "C" void __sanitizer_cov_trace_pc();
extern "C" void __sanitizer_cov_trace_pc() { ++blocks; }
#endif

std::uint64_t tolvane::workdone() { return blocks; }
