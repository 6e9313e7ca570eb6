// The global mappings of globals that the server no longer has: their clean-up in every namespace, part of step "5.41".
#pragma once

namespace tolvane {

/// Deletes, in the mapping section of each namespace up to the first gap in their numbers, the mappings of dropped
/// globals and their subscript-level mappings and closes the gaps; where a number stands twice, a mapping that is then
/// left in a gap is deleted, too. A section that is left without entries is deleted; one whose first line has an empty
/// key counts as such, and its lines join the section before. A section without a mapping number 1 stays as it is.
void dropglobals();

}  // namespace tolvane
