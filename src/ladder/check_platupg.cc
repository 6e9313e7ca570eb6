#include "ladder/check_platupg.h"

#include <algorithm>
#include <iterator>

#include "document/edits.h"
#include "document/observer.h"
#include "ladder/platformrecord.h"

namespace tolvane {

namespace {

bool permitted(int from, int to) {
  return std::any_of(std::begin(validupgs), std::end(validupgs),
                     [=](const Upgrade& upgrade) { return upgrade.from == from && upgrade.to == to; });
}

bool removelegacycommunication(std::string_view family) {
  if (family != "UNIX" && family != "VMS") return false;
  Text value;
  return takeentry("[Com]", "Com", value);
}

void warn(std::string_view from, std::string_view to) {
  print({"\nWarning: Cannot upgrade from ", from, " to ", to, "!\nContact Tessvar.\n\n"});
}

}  // namespace

int getmachid(std::string_view name) {
  for (const LegacyName& row : qpxnames) {
    if (row.name == name) return row.id;
  }
  // Row 0 is no platform: its name is not looked up.
  for (int id = 1; id < static_cast<int>(std::size(platname)); ++id) {
    if (platname[id] == name) return id;
  }
  return 0;
}

bool check_platupg(int build) {
  const Text record = platformrecord();
  const Text name = getfield(record, 1, '~');
  const bool changed = removelegacycommunication(getfield(record, 2, '~'));
  const int platform = getmachid(name);
  if (platform == 0) throw Fatal{"Unknown platform: ", name, "."};
  if (platform == build) return changed;
  if (!permitted(platform, build)) {
    warn(name, platname[build]);
    return false;  // kept: also when the communication entry was removed
  }
  setplatformrecord(replacefield(record, 1, '~', platname[build]));
  return true;
}

}  // namespace tolvane
