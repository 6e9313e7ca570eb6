// The command `merge`: builds a configuration parameter file out of the two files of the legacy layout.
#pragma once

#include <functional>

#include "document/linestore.h"

namespace tolvane {

/// The first of the system file's lines while the store holds the network file's, else none. The process's, as the
/// store is.
extern Line* systemstart;

/// The version of the loaded legacy file, word 2 of its file type; empty when it names none.
Text legacyversion();

/// Loads a file into the line store.
using Load = std::function<void(const char* path)>;

/// What `merge` does before it writes: loads the legacy files, and converts and joins them in the line store. Fatal
/// when one cannot be read or is not of its type, or the platform is unknown. A line that would be longer than 511
/// characters throws TextTooLong.
void convertpair(const char* systempath, const char* networkpath, const Load& loadfile);

/// Converts and joins the legacy system and network configuration files and writes the result, in the current version,
/// to the target, which is never read and of which no backup is kept. Returns the exit status 1. Fatal, with the target
/// untouched, when a legacy file cannot be read or is not of its type, the platform is unknown, or the target cannot
/// be written. A line that would be longer than 511 characters throws TextTooLong, and so does a target's name of more
/// than 507, when the document is ready to be written; no file is touched before.
int merge(const char* path, const char* systempath, const char* networkpath);

}  // namespace tolvane
