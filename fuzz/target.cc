// The entry of a fuzz target, which the fuzzer's own `main` calls; TOLVANE_TARGET names the target.
#include "fuzz/properties.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tolvane::fuzz::TOLVANE_TARGET({reinterpret_cast<const char*>(data), size});
  return 0;
}
