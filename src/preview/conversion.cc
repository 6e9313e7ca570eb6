#include "preview/conversion.h"

#include "commands/convert.h"
#include "document/forget.h"
#include "legacy/convertpair.h"

namespace tolvane {

namespace {

void appendlines(Snapshot& snapshot, const Line* first, Vocabulary& words) {
  std::uint32_t section = words.number("");
  for (const Line* line = first; line != nullptr; line = line->next()) {
    snapshot.push_back(entryof(line->text(), section, words));
    section = snapshot.back().section;
  }
}

}  // namespace

std::optional<Text> convertsources(bool merge, const Load& load) {
  forget();
  load(0, nullptr);
  if (!merge) return convert();
  LegacySystem system = convertsystemfile();
  load(1, &system.lines);
  joinnetworkfile(system);
  return Text{};
}

Snapshot snapshot(const Aside* aside, Vocabulary& words) {
  Snapshot snapshot;
  if (aside != nullptr) appendlines(snapshot, aside->first(), words);
  appendlines(snapshot, start, words);
  return snapshot;
}

}  // namespace tolvane
