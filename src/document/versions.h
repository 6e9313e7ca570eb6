// The versions of the configuration parameter file, and the one comparison between them.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tolvane {

/// Every known version, oldest first: their place in this list, never their number, tells which is older. The last one
/// is the version that this tool writes.
inline constexpr std::string_view sVersions[] = {
    "2.0",  "2.01", "2.02", "2.03", "2.04", "2.1",  "3.0",   "3.1",  "3.11", "3.12", "3.13", "3.14", "3.2",
    "3.21", "3.3",  "4.0",  "4.1",  "4.2",  "5.0",  "5.0.5", "5.2",  "5.3",  "5.31", "5.32", "5.33", "5.34",
    "5.35", "5.36", "5.37", "5.38", "5.39", "5.40", "5.41",  "5.42", "5.43", "5.44", "5.45",
};

/// True when the version is in the list.
constexpr bool versionknown(std::string_view version) {
  return std::find(std::begin(sVersions), std::end(sVersions), version) != std::end(sVersions);
}

inline constexpr std::string_view currentversion = sVersions[std::size(sVersions) - 1];

/// True when both are known and the second is older than the first. An unknown version is neither older nor newer than
/// any other.
constexpr bool versionolder(std::string_view reference, std::string_view version) {
  bool met = false;  // the version, on the way to the reference
  for (const std::string_view row : sVersions) {
    if (row == reference) return met;
    if (row == version) met = true;
  }
  return false;
}

}  // namespace tolvane
