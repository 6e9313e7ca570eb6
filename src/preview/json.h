// The preview for programs: docs/preview.schema.json describes it.
#pragma once

#include <string>

#include "preview/preview.h"

namespace tolvane {

/// One object on one line, with its newline; always UTF-8.
std::string json(const Preview& preview);

}  // namespace tolvane
