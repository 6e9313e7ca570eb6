// Runs that end early.
#pragma once

#include <string>

#include "document/ends.h"

namespace tolvane::test {

/// The message if the work is fatal, and an empty string if it is not.
template <typename Work>
std::string fatal(const Work& work) {
  try {
    work();
  } catch (const Fatal& end) {
    return end.message;
  }
  return "";
}

}  // namespace tolvane::test
