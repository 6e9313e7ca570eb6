// Escaping text of any bytes for a terminal.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tolvane {

/// Length in bytes of the first UTF-8 character; 0 if it is not valid UTF-8. The text must not be empty.
std::size_t utf8length(std::string_view text);

/// Returns the code point of one UTF-8 character.
std::uint32_t decoded(std::string_view bytes);

/// Returns true for a control character, and for one that changes the direction of text.
bool iscontrol(std::uint32_t character);

/// Formats the value in hexadecimal, with leading zeros up to the width.
std::string hexadecimal(unsigned value, int width);

/// Escapes every control character, and every byte that is not UTF-8, as \t, \r, \n, or \x and two hexadecimal digits
/// for each byte.
std::string visible(std::string_view text);

}  // namespace tolvane
