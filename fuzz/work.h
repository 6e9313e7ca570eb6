// Counts the work that instrumented code does, in basic blocks. Every line that is looked at is at least one of them.
#pragma once

#include <cstdint>
#include <map>

namespace tolvane {

/// The blocks entered so far; always 0 where the code is not instrumented.
std::uint64_t workdone();

/// How often each block was entered, by its address in the program's file.
using BlockCounts = std::map<std::uintptr_t, std::uint64_t>;

/// Counts from now on how often each block is entered, beginning at 0.
void countblocks();

/// What was counted since the last `countblocks`.
BlockCounts blockcounts();

}  // namespace tolvane
