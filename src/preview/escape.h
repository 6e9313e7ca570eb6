// Text that may hold any byte, made fit for where it goes.
#pragma once

#include <string>
#include <string_view>

namespace tolvane {

/// How many bytes the character at the beginning of a text that is not empty takes in UTF-8; 0 when they are not UTF-8.
std::size_t utf8length(std::string_view text);

/// Fit for a terminal: control characters, characters that change the direction of what follows, and bytes that are not
/// UTF-8 stand as \t, \r, \n or \x and two digits a byte.
std::string visible(std::string_view text);

/// A file name for the header of a unified diff, as patch(1) reads it: in quotes when it has to be, and with a tab
/// behind it when it holds blanks.
std::string headername(std::string_view path);

/// As a string of JSON. Text that is not UTF-8 becomes an object instead, {"latin1": string}, in which each character
/// from U+0000 to U+00FF stands for the byte of that number.
std::string quoted(std::string_view text);

}  // namespace tolvane
