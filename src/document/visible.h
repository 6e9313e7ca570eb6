// Text that may hold any byte, made fit for a terminal.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tolvane {

/// Number of bytes that the character at the beginning of a text that is not empty takes in UTF-8; 0 if they are not
/// UTF-8.
std::size_t utf8length(std::string_view text);

/// The character that the bytes stand for, which are one character in UTF-8.
std::uint32_t decoded(std::string_view bytes);

/// True if a terminal acts upon the character instead of showing it: a control character, or one that changes the
/// direction of what follows.
bool acts(std::uint32_t character);

/// The value in hexadecimal, with leading zeros up to the width.
std::string hexadecimal(unsigned value, int width);

/// Replaces every character that a terminal acts upon, and every byte that is not UTF-8, by \t, \r, \n or by \x and two
/// digits a byte.
std::string visible(std::string_view text);

}  // namespace tolvane
