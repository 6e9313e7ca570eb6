#include "commands/forget.h"

#include <utility>

#include "document/linestore.h"
#include "document/pairs.h"
#include "legacy/merge.h"

namespace tolvane {

namespace {

void forgetlines() {
  while (start != nullptr) discard(start);
}

}  // namespace

void forget() {
  forgetlines();
  start = std::exchange(systemstart, nullptr);
  forgetlines();
  forgetpairs();
}

}  // namespace tolvane
