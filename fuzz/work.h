// Counts the work that instrumented code does, in basic blocks. Every line that is looked at is at least one of them.
#pragma once

#include <cstdint>

namespace tolvane {

/// The blocks entered so far; always 0 where the code is not instrumented.
std::uint64_t workdone();

}  // namespace tolvane
