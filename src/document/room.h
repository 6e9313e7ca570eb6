// Memory for the lines of a large file, taken from the system at once instead of page by page.
#pragma once

#include <string_view>

namespace tolvane {

/// Keeps what is freed for what is allocated next, for the rest of the process.
void keepmemory();

/// Takes memory for the lines that parsing these bytes will allocate. Where there is none, they find out themselves.
void takeroom(std::string_view bytes);

}  // namespace tolvane
