// The lines in memory as a preview sees them: those of the store, and behind a system file's lines that `merge` keeps
// aside those of its network file.
#pragma once

#include "commands/forget.h"
#include "preview/account.h"

namespace tolvane {

/// The lines as they stand.
Snapshot snapshot(Vocabulary& words);

/// Forgets all lines at the end of its life.
struct Forgetting {
  Forgetting() = default;
  ~Forgetting() { forget(); }
  Forgetting(const Forgetting&) = delete;
  Forgetting& operator=(const Forgetting&) = delete;
};

}  // namespace tolvane
