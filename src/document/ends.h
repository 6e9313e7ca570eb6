// How a run ends: its two exit statuses, and two of the three ways in which it ends early; the third is the library's
// std::bad_alloc. `main` turns what is thrown into output and exit status.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tolvane {

/// The exit status of a command that ran, converted or not. Kept: callers depend on 1 here and 0 for every other end.
inline constexpr int ran = 1;

/// The exit status of the usage text and of an end for a condition that the user can mend.
inline constexpr int didnotrun = 0;

/// A condition that the user can mend: its message is printed as one line.
struct Fatal {
  /// Takes the message in pieces, without its newline; it may be of any length.
  Fatal(std::initializer_list<std::string_view> pieces) {
    for (const std::string_view piece : pieces) message += piece;
  }

  std::string message;
};

/// The error for a file that cannot be opened for reading, or not be read to its end.
inline Fatal unreadable(const char* path) { return Fatal{"Cannot open file ", path, " for input."}; }

/// The error for a file that cannot be opened for writing.
inline Fatal cannotopen(const char* path) { return Fatal{"Cannot open file ", path, " for output."}; }

/// The error for contents that cannot be written.
inline Fatal cannotwrite() { return Fatal{"Error writing output file"}; }

/// A text outgrew the 511 characters of a line: the run ends by an abort, with every file as it was.
struct TextTooLong {};

}  // namespace tolvane
