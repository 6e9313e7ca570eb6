// Text that may hold any byte, made fit for a diff and for JSON.
#pragma once

#include <string>
#include <string_view>

#include "document/visible.h"

namespace tolvane {

/// A file name for the header of a unified diff, as patch(1) reads it: in quotes when it has to be, and with a tab
/// behind it when it holds blanks.
std::string headername(std::string_view path);

/// Appends a text, escaped for a terminal as by visible().
void appendvisible(std::string& output, std::string_view text);

/// Appends a text as a string of JSON. Text that is not UTF-8 becomes an object instead, {"latin1": string}, in which
/// each character from U+0000 to U+00FF stands for the byte of that number.
void appendquoted(std::string& output, std::string_view text);

/// The same as a text of its own.
std::string quoted(std::string_view text);

}  // namespace tolvane
