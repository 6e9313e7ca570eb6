// The command `fdbms`: adds the "FDBMS" database to a configuration parameter file.
#pragma once

namespace tolvane {

/// Adds the database at the first free number unless it is listed before that. Returns the exit status 1. Fatal, with
/// the file untouched, when it cannot be read or written or does not record its version. Where there is something to
/// write, a file name of more than 507 characters throws TextTooLong, before any file is touched.
int fdbms(const char* path);

}  // namespace tolvane
