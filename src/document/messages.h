// What is printed for people. A terminal gets every control character made visible, for a message can hold text of a
// file or of the command line; a pipe or a file gets every byte as it is.
#pragma once

#include <initializer_list>
#include <string_view>

namespace tolvane {

/// Prints a piece of a message on standard output, with its newlines as they are.
void say(std::string_view text);

/// Prints a message of one line, given without its newline: a newline in it is a control character like any other.
void sayline(std::string_view text);

/// Prints one line on standard error, given in pieces without its newline, behind the program's name.
void complain(std::initializer_list<std::string_view> pieces);

}  // namespace tolvane
