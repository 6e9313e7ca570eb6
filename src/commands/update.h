// The command `update`: brings a configuration parameter file up to the current version.
#pragma once

#include "document/text.h"

namespace tolvane {

/// What `update` does before it writes: loads the file, converts it in the line store and gives the suffix of its
/// backup. False when there is nothing to write. Fatal when the file cannot be read, does not record its version, or
/// names an unknown platform. A line that would be longer than 511 characters throws TextTooLong.
bool convert(const char* path, Text& backupsuffix);

/// Converts the file in place and keeps the old one under its name, "_" and the letters and digits of its version.
/// Returns the exit status 1, also when there was nothing to convert. Fatal, with the file untouched, when it cannot be
/// read or written, does not record its version, or names an unknown platform. A line or file name that would be longer
/// than 511 characters throws TextTooLong, before any file is touched.
int update(const char* path);

}  // namespace tolvane
