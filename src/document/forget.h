// Frees what a run leaves to the end of the process, for programs that convert several files.
#pragma once

#include "document/linestore.h"
#include "document/pairs.h"

namespace tolvane {

/// Frees the lines of the store and the lists of pairs, so that another file is converted as in a process of its own.
inline void forget() {
  while (start != nullptr) discard(start);
  forgetpairs();
}

}  // namespace tolvane
