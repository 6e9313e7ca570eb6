// Unified diffs, as patch(1) applies them.
#pragma once

#include <string>
#include <string_view>

namespace tolvane {

/// The diff that makes the one text the other, byte for byte; empty when they are the same. The names are those of its
/// header.
std::string unified(std::string_view before, std::string_view after, std::string_view name, std::string_view newname);

/// The same diff for a terminal: its lines fit for one, and coloured when that is wanted.
std::string shown(std::string_view diff, bool color);

}  // namespace tolvane
