// The forms in which a preview is shown, and the wording that they share.
#pragma once

#include <string>

#include "preview/preview.h"

namespace tolvane {

/// The whole account in words, for people. With colours for a terminal when that is wanted.
std::string report(const Preview& preview, bool color);

/// One line, with its newline.
std::string summary(const Preview& preview);

/// One JSON object on one line, with its newline; always UTF-8.
std::string json(const Preview& preview);

/// "1 step", "2 steps".
std::string counted(std::size_t value, const std::string& thing);

/// "version 5.45 (current)".
std::string versiontext(const Source& source);

/// True for an update of a file whose version is not known.
bool isunknown(const Preview& preview);

/// What is wrong, without a newline; the preview has trouble.
std::string troubletext(const Preview& preview);

}  // namespace tolvane
