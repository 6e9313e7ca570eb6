// Converting files in memory, as the commands do.
#pragma once

#include <functional>
#include <optional>

#include "document/linestore.h"
#include "document/text.h"

namespace tolvane {

/// Fills the line store with a source, given by its place. Gets the system file's lines when it is the network file.
using Load = std::function<void(std::size_t source, const Aside* system)>;

/// Forgets earlier lines and converts one source as `update` does, or two as `merge`. Returns the suffix of the backup,
/// without a meaning for a merge; none when nothing would be written. Ends as the commands do.
std::optional<Text> convertsources(bool merge, const Load& load);

}  // namespace tolvane
