// The bytes of a file and the line store: parsing the one into the other, and back. No file is involved.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tolvane {

/// What parsing did to the lines of a file.
struct Reading {
  std::size_t lines = 0;  // of the store
  std::size_t blank = 0;  // lines, or rests of split ones, that were dropped because they are blank
  std::size_t split = 0;  // lines of more than 511 characters
  std::size_t cut = 0;    // lines that lost what stood behind a NUL byte
};

/// Empties the store, freeing nothing, and fills it with the lines of the bytes. Lines of only blanks and tabs are
/// dropped, lines of more than 511 characters split; a NUL byte ends its line, and a carriage return stays part of it.
Reading parse(std::string_view bytes);

/// For each line that parsing the bytes makes, the number of its line in the file, from 1.
std::vector<std::size_t> linenumbers(std::string_view bytes);

/// The store as the contents of its file: one empty line before each section header that is not the first line. They
/// have about the given size; otherwise they only take longer.
std::string contents(std::size_t size = 0);

/// True when the text is empty or consists only of blanks and tabs.
bool blankline(std::string_view text);

}  // namespace tolvane
