// The metadata of a file: owner, group, mode and extended attributes, which include the ACL.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>
#include <vector>

namespace tolvane {

struct Attributes {
  struct Extended {
    std::string name;
    std::string value;
  };

  uid_t owner;
  gid_t group;
  mode_t mode;                     // permission bits, without the file type
  std::vector<Extended> extended;  // the ACL has its mask cleared; the mode includes the mask
};

/// Reads the attributes of an open file, which may be open with O_PATH. Leaves out extended attributes that the caller
/// may not read. Returns std::nullopt if the file system reports an error or the ACL cannot be read.
std::optional<Attributes> attributesof(int file);

/// Sets these attributes on an open file, and removes the ACL that it inherited from its directory. The file is never
/// open to more users than the attributes allow. If the caller may not set the owner, the caller stays the owner. If
/// the caller may not set the group either, the group gets only the rights of others. Leaves out extended attributes
/// that the caller may not set. Returns false on any other error, and if the ACL cannot be set.
bool setattributes(int file, const Attributes& attributes);

}  // namespace tolvane
