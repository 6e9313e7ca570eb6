// The command `setparameter`: sets one entry of a configuration parameter file.
#pragma once

namespace tolvane {

/// Sets the entry of the section, given with its brackets, adding entry and section when they are missing, and writes
/// straight over the file; a value that is already set, also the empty one of a missing entry, writes nothing. The
/// words are taken literally. Returns the exit status 1. Fatal when the file cannot be read or written. A line that
/// would be longer than 511 characters throws TextTooLong, before the file is touched.
int setparameter(const char* path, const char* section, const char* key, const char* value);

}  // namespace tolvane
