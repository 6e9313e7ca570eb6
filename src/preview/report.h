// The preview in words, for people.
#pragma once

#include <string>

#include "preview/preview.h"

namespace tolvane {

/// The whole account. With colours for a terminal when that is wanted.
std::string report(const Preview& preview, bool color);

/// One line, with its newline.
std::string summary(const Preview& preview);

/// What is wrong, without a newline; the preview has trouble.
std::string troubletext(const Preview& preview);

}  // namespace tolvane
