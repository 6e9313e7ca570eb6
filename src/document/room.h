// Memory for the lines of a large file, taken from the system at once instead of page by page.
#pragma once

#include <string_view>

namespace tolvane {

/// From now on, memory that is freed stays with the process for what is allocated next.
void keepmemory();

/// Has the system fill in the memory for the lines that parsing these bytes allocates. Does nothing where there is not
/// so much. Needs keepmemory().
void takeroom(std::string_view bytes);

}  // namespace tolvane
