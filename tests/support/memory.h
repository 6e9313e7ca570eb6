// The process's own memory between two runs of its procedures, which in the program end with the process.
#pragma once

namespace tolvane::test {

/// Empties the line store and the pair lists, and frees what they hold.
void clearmemory();

}  // namespace tolvane::test
