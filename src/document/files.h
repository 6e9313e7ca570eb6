// The line store and its file: loading it, and writing it in each of the three ways.
#pragma once

#include <string_view>

#include "document/original.h"

namespace tolvane {

/// Fills the store with the file, as `parse` does (parse.h). Fatal when the file cannot be read.
void load(Original& original);

/// Writes the store straight over the file. Fatal as `overwrite` is (overwrite.h).
void save(const Original& original);

/// Replaces the file by the store. Fatal as `replace` is (replace.h), the file itself then being untouched.
void output(Original& original);

/// The same, and leaves the old file under its name followed by "_" and the suffix, in place of an older backup. Fatal
/// as `replacekeeping` is.
void backup(Original& original, std::string_view suffix);

}  // namespace tolvane
