// The line store: the whole configuration parameter file in memory, one node a line, and its reading and writing.
//
// There is one store per process, held in `start` and `last`; both are none (null) or both set. Nodes are allocated
// with malloc, never shared, and freed by the operation that unlinks them; what is left at the end of the process is
// left to its exit. Memory that cannot be had is a std::bad_alloc.
#pragma once

#include <string>
#include <string_view>

#include "document/original.h"
#include "document/text.h"

namespace tolvane {

/// One line of the file, without its newline.
struct Line {
  Line* next;
  Line* previous;
  Text text;
};

static_assert(sizeof(Line) == 528);

extern Line* start;
extern Line* last;

/// Empties the store, freeing nothing, and fills it with the lines of the file. Lines of only blanks and tabs are
/// dropped, lines of more than 511 characters split; a NUL byte ends its line, and a carriage return stays part of it.
/// Fatal when the file cannot be opened or read; a directory counts as an empty file.
void load(const char* path);

/// The same from a file that is open already.
void load(Original& original);

/// The store as the contents of its file: one empty line before each section header that is not the first line.
std::string contents();

/// Writes the store straight over the file. Fatal as `overwrite` is (overwrite.h).
void save(const Original& original);

/// Replaces the file by the store. Fatal as `replace` is (replace.h), the file itself then being untouched.
void output(Original& original);

/// The same, and keeps the old file under its name followed by "_" and the suffix, in place of an older backup. Fatal
/// as `replacekeeping` is.
void backup(Original& original, std::string_view suffix);

/// A new line that is not linked yet; its contents are undefined.
Line* makeentry();

/// Appends a line at the tail of the store and returns the previous tail, none if the store was empty.
Line* dlstore(Line* line);

/// Links a line into the store behind another one.
void insertafter(Line* place, Line* line);

/// Takes a line out of the store and frees it.
void discard(Line* line);

/// True when the text is empty or consists only of blanks and tabs.
bool blankline(std::string_view text);

}  // namespace tolvane
