// What `update` would do with its result: the names that it would use, and what stands in their way.
#pragma once

#include "preview/preview.h"

namespace tolvane {

/// Gives the preview its backup under that suffix, or the trouble that keeps the update from writing its result.
void planbackup(Preview& preview, std::string_view suffix);

}  // namespace tolvane
