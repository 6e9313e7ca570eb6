// The entry of a fuzz target, which the fuzzer's own `main` calls; TOLVANE_TARGET names the target.
#include <cstdio>

#include "fuzz/properties.h"

extern "C" int LLVMFuzzerInitialize(int* /*count*/, char*** /*words*/) {
  // What a run prints is not looked at here.
  return std::freopen("/dev/null", "w", stdout) == nullptr ? 1 : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tolvane::fuzz::TOLVANE_TARGET({reinterpret_cast<const char*>(data), size});
  return 0;
}
