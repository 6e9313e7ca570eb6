// The bytes of an open file: reading all of them, writing all, syncing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tolvane {

/// Reads a file to its end, but no more bytes than the limit and one. Returns an error number, 0 for none.
int readall(int file, std::string& bytes, std::size_t limit = PTRDIFF_MAX / 2);

/// Throw what ends a run whose file has this error of open(2) or of readall(), 0 for none: Fatal, or std::bad_alloc if
/// there was no memory to open it. A directory counts as an empty file.
void checkopen(int error, const char* path);
void checkread(int error, const char* path);

/// Writes all of the contents. Returns false, with errno set, on error.
bool writeall(int file, std::string_view contents);

/// Syncs a file. Also returns true if fsync(2) is not supported for it, or its file system is read-only. Returns false,
/// with errno set, on error.
bool sync(int file);

}  // namespace tolvane
