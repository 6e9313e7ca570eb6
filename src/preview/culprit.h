// Which line makes a conversion end because it would grow beyond 511 characters.
#pragma once

#include <optional>

#include "preview/preview.h"

namespace tolvane {

/// The line of the preview's sources without whose length the conversion would not end in the part that it ended in:
/// the first one that, whole, is too much. None when no line is to blame. Uses the line store, and leaves no
/// observer.
std::optional<LongLine> culprit(const Preview& preview);

}  // namespace tolvane
