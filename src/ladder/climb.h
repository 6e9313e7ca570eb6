// A ladder: a table of conversion steps, oldest first, and the one rule by which it is climbed.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>

#include "document/observer.h"
#include "document/versions.h"

namespace tolvane {

/// A step brings the line store from whatever an older version wrote to what its own version writes.
struct Step {
  std::string_view version;
  void (*apply)();
  std::string_view phrase;  // what it is about
};

/// The number of steps that are newer than the version, which are the last ones. 0 for a version that is not known.
inline std::size_t pending(std::span<const Step> ladder, std::string_view version) {
  return static_cast<std::size_t>(std::count_if(ladder.begin(), ladder.end(),
                                                [=](const Step& step) { return versionolder(step.version, version); }));
}

/// Applies every step that is newer than the version, oldest first. A step never looks at whether another one ran; a
/// version that is not known applies none. The name of the ladder is for the observer.
inline void climb(std::string_view name, std::span<const Step> ladder, std::string_view version) {
  for (const Step& step : ladder.last(pending(ladder, version))) {
    beginstep(name, step.version, step.phrase);
    step.apply();
  }
}

/// True when every step has a known version and each is newer than the one before it.
constexpr bool ascends(std::span<const Step> ladder) {
  std::string_view before = sVersions[0];
  for (const Step& step : ladder) {
    if (!versionolder(step.version, before)) return false;
    before = step.version;
  }
  return true;
}

}  // namespace tolvane
