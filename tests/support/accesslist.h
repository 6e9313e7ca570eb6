// Access lists in the form in which the system keeps them.
#pragma once

#include <sys/xattr.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace tolvane::test {

inline const char* const accesslist = "system.posix_acl_access";

/// Its owner may read and write, user 1 may read, and the group nothing, though the mode says that it may read.
inline constexpr std::string_view onemoreuser{
    "\2\0\0\0"
    "\x01\0\6\0\xff\xff\xff\xff"
    "\x02\0\4\0\x01\0\0\0"
    "\x04\0\0\0\xff\xff\xff\xff"
    "\x10\0\4\0\xff\xff\xff\xff"
    "\x20\0\0\0\xff\xff\xff\xff",
    4 + 5 * 8};

/// The access list of a file, empty without one.
inline std::string listof(const std::filesystem::path& path) {
  std::string list(1000, ' ');
  const ssize_t size = getxattr(path.c_str(), accesslist, list.data(), list.size());
  list.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return list;
}

/// False when the file system has no access lists.
inline bool setlist(const std::filesystem::path& path, const char* name, std::string_view list) {
  return setxattr(path.c_str(), name, list.data(), list.size(), 0) == 0;
}

}  // namespace tolvane::test
