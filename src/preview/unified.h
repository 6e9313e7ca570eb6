// Unified diffs, as patch(1) applies them.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tolvane {

/// Gets a diff in pieces of whole lines.
using Sink = std::function<void(std::string_view piece)>;

/// The diff that makes the one text the other, byte for byte; nothing when they are the same. The names are those of
/// its header.
void unified(std::string_view before, std::string_view after, std::string_view name, std::string_view newname,
             const Sink& sink);

/// A piece of a diff for a terminal: its lines fit for one, and coloured when that is wanted.
std::string shown(std::string_view diff, bool color);

}  // namespace tolvane
