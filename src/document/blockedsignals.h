// Blocks signals while files are inconsistent.
#pragma once

#include <csignal>

namespace tolvane {

/// As long as it lives, signals wait that can: hang-up, interrupt, terminate and all others. At its end they do what
/// they would have done at once, so that a process that they end has the usual exit status.
class BlockedSignals {
 public:
  BlockedSignals() {
    sigset_t all;
    (void)sigfillset(&all);
    (void)sigprocmask(SIG_SETMASK, &all, &before_);
  }
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;
  ~BlockedSignals() { (void)sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_;
};

}  // namespace tolvane
