// The conversion of a legacy system configuration file.
#pragma once

#include <span>
#include <string_view>

#include "ladder/climb.h"

namespace tolvane {

/// Its ladder, oldest step first.
extern const std::span<const Step> systemladder;

/// Brings the lines of a legacy system file from its version up to "3.12"; a version that is later or not known changes
/// nothing. A line that would grow too long throws TextTooLong.
void convertsystem(std::string_view version);

}  // namespace tolvane
