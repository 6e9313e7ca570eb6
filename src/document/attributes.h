// What a file has besides its contents: owner, group, mode and extended attributes, the ACL among them.
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
  mode_t mode;                     // permissions without the kind of the file
  std::vector<Extended> extended;  // an ACL with its mask cleared: the mode has the mask, too
};

/// Reads the attributes of an open file, which may be open with O_PATH. Leaves out extended attributes that the caller
/// may not read. Returns nothing if the file system reports an error, or if there is an ACL that cannot be read.
std::optional<Attributes> attributesof(int file);

/// Gives an open file these attributes, and no others: not the ACL that its directory gave it. At no moment is the file
/// open to more users than the attributes say. A file that cannot get its owner stays the caller's; one that cannot get
/// its group either gives its own group no more rights than others have. Extended attributes that the caller may not
/// set are left out. Returns false on any other error, and if the ACL cannot be set.
bool setattributes(int file, const Attributes& attributes);

}  // namespace tolvane
