#include "preview/lines.h"

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

}  // namespace

Snapshot snapshot(Vocabulary& words) {
  Snapshot snapshot;
  if (systemstart != nullptr) appendfile(snapshot, systemstart, words);
  appendfile(snapshot, start, words);
  return snapshot;
}

}  // namespace tolvane
