// Messages for the user. On a terminal, control characters are escaped, because a message can contain text from a file
// or the command line. A pipe or a file gets the bytes unchanged.
#pragma once

#include <initializer_list>
#include <string_view>

namespace tolvane {

/// Prints a part of a message on standard output. Newlines are not escaped.
void say(std::string_view text);

/// Prints a message of one line and a newline on standard output. A newline in the message is escaped on a terminal.
void sayline(std::string_view text);

/// Prints "tolvane: ", the pieces and a newline on standard error. Gives up after a second if nobody reads it, because
/// signals may be blocked.
void complain(std::initializer_list<std::string_view> pieces);

}  // namespace tolvane
