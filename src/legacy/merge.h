// The command `merge`: builds a configuration parameter file out of the two files of the legacy layout.
#pragma once

namespace tolvane {

/// Converts and joins the legacy system and network configuration files and writes the result, in the current version,
/// to the target, which is never read and of which no backup is left. Returns the exit status `ran`. Fatal, with the
/// target untouched, when a legacy file cannot be read or is not of its type, the platform is unknown, or the target
/// cannot be written. A line that would be longer than 511 characters throws TextTooLong, and so does a target's name
/// of more than 507, when the document is ready to be written; no file is touched before.
int merge(const char* path, const char* systempath, const char* networkpath);

}  // namespace tolvane
