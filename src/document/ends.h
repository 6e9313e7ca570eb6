// The two ways in which a run ends early. Both are raised where they are noticed and turned into output and exit
// status in one place, beside `main`; memory that cannot be had is the third, the library's own std::bad_alloc.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace tolvane {

/// A condition that the user can mend: its message is printed as one line and the exit status is 0.
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

/// A text outgrew the 511 characters of a line: the run ends by an abort, with every file as it was.
struct TextTooLong {};

}  // namespace tolvane
