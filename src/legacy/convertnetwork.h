// The conversion of a legacy network configuration file.
#pragma once

#include <span>
#include <string_view>

#include "ladder/climb.h"

namespace tolvane {

/// Its ladder, oldest step first.
extern const std::span<const Step> networkladder;

/// Brings the lines of a legacy network file from its version up to "3.12", the last step moving them into the sections
/// of the newer layout; a version that is later or not known changes nothing. A line that would grow too long throws
/// TextTooLong.
void convertnetwork(std::string_view version);

}  // namespace tolvane
