#include "commands/forget.h"

#include <cstdlib>
#include <utility>

#include "document/linestore.h"
#include "document/pairs.h"
#include "legacy/merge.h"

namespace tolvane {

namespace {

void forgetlines() {
  while (start != nullptr) discard(start);
}

void forgetpairs(Pair*& list) {
  while (list != nullptr) {
    Pair* const pair = std::exchange(list, list->next);
    std::free(pair->text);
    std::free(pair);
  }
}

}  // namespace

void forget() {
  forgetlines();
  start = std::exchange(systemstart, nullptr);
  forgetlines();
  for (Pair*& list : pairs) forgetpairs(list);
}

}  // namespace tolvane
