// The commands on a configuration parameter file. Each returns the exit status `ran`.
//
// They are fatal when the file cannot be read or written, and leave it untouched then; `setparameter` as far as
// `overwrite` can (overwrite.h). A line or file name that would be longer than 511 characters throws TextTooLong,
// before any file is touched.
#pragma once

namespace tolvane {

/// Converts the file in place and leaves the old one under its name, "_" and the letters and digits of its version.
/// Also fatal when the file does not record its version, or names an unknown platform.
int update(const char* path);

/// Sets the entry of the section, given with its brackets, adding entry and section when they are missing, and writes
/// straight over the file; a value that is already set, also the empty one of a missing entry, writes nothing. The
/// words are taken literally.
int setparameter(const char* path, const char* section, const char* key, const char* value);

/// Adds the database "FDBMS" at the first free number unless it is listed before that. Also fatal when the file does
/// not record its version.
int fdbms(const char* path);

}  // namespace tolvane
