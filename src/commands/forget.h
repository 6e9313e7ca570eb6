// Frees what the commands leave to the end of the process, for programs that run several of them.
#pragma once

namespace tolvane {

/// Frees all lines, also those that `merge` keeps aside, and the lists of pairs, so that another file is converted as
/// in a process of its own.
void forget();

}  // namespace tolvane
