#include "preview/conversion.h"

#include "commands/convert.h"
#include "document/forget.h"
#include "legacy/convertpair.h"

namespace tolvane {

std::optional<Text> convertsources(bool merge, const Load& load) {
  forget();
  load(0, nullptr);
  if (!merge) return convert();
  LegacySystem system = convertsystemfile();
  load(1, &system.lines);
  joinnetworkfile(system);
  return Text{};
}

}  // namespace tolvane
