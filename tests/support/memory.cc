#include "tests/support/memory.h"

#include <cstdlib>

#include "document/linestore.h"
#include "document/pairs.h"
#include "legacy/merge.h"

namespace tolvane::test {

namespace {

void clearstore() {
  while (start != nullptr) discard(start);
}

}  // namespace

void clearmemory() {
  clearstore();
  start = systemstart;
  systemstart = nullptr;
  clearstore();
  for (Pair*& list : pairs) {
    while (list != nullptr) {
      Pair* const pair = list;
      list = pair->next;
      std::free(pair->text);
      std::free(pair);
    }
  }
}

}  // namespace tolvane::test
