#include "preview/lines.h"

#include <cstdlib>

#include "document/fields.h"
#include "document/linestore.h"
#include "legacy/merge.h"

namespace tolvane {

namespace {

void appendfile(Snapshot& snapshot, const Line* first, Vocabulary& words) {
  std::uint32_t section = words.number("");
  for (const Line* line = first; line != nullptr; line = line->next) {
    snapshot.push_back(entryof(line->text, section, words));
    section = snapshot.back().section;
  }
}

void release(Line* line) {
  while (line != nullptr) {
    Line* const next = line->next;
    std::free(line);
    line = next;
  }
}

void release(Pair* pair) {
  while (pair != nullptr) {
    Pair* const next = pair->next;
    std::free(pair->text);
    std::free(pair);
    pair = next;
  }
}

/// True when the store has other lines than those set aside.
bool apart() { return systemstart != nullptr && systemstart != start; }

}  // namespace

Snapshot snapshot(Vocabulary& words) {
  Snapshot snapshot;
  if (apart()) appendfile(snapshot, systemstart, words);
  appendfile(snapshot, start, words);
  return snapshot;
}

void forget() {
  if (apart()) release(systemstart);
  release(start);
  systemstart = start = last = nullptr;
  for (Pair*& list : pairs) {
    release(list);
    list = nullptr;
  }
}

}  // namespace tolvane
