#include "document/attributes.h"

#include <endian.h>
#include <linux/posix_acl.h>
#include <linux/posix_acl_xattr.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

namespace tolvane {

namespace {

constexpr std::string_view acl = "system.posix_acl_access";

/// The name under which a file that is open with O_PATH can be reached: calls on its descriptor are refused.
std::string pathof(int file) { return "/proc/self/fd/" + std::to_string(file); }

ssize_t list(int file, char* names, std::size_t size) {
  const ssize_t length = flistxattr(file, names, size);
  return length < 0 && errno == EBADF ? listxattr(pathof(file).c_str(), names, size) : length;
}

ssize_t get(int file, const char* name, char* value, std::size_t size) {
  const ssize_t length = fgetxattr(file, name, value, size);
  return length < 0 && errno == EBADF ? getxattr(pathof(file).c_str(), name, value, size) : length;
}

/// True if the error says that the caller may not read or set an extended attribute, and not that something failed.
bool notpermitted() {
  return errno == EPERM || errno == EACCES || errno == ENODATA || errno == ENOTSUP || errno == EINVAL;
}

/// Makes the text what a call writes into a buffer. The call also tells the size that it needs. Returns false on error.
template <typename Call>
bool fill(std::string& text, const Call& call) {
  ssize_t length = 0;
  do {
    const ssize_t needed = call(nullptr, 0);
    if (needed <= 0) return needed == 0;
    text.resize(static_cast<std::size_t>(needed));
    length = call(text.data(), text.size());
  } while (length < 0 && errno == ERANGE);  // it has grown in between
  text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
  return length >= 0;
}

/// Clears the mask of an ACL, which closes it to all but the owner and others; fchmod() restores the mask.
void clearmask(std::string& list) {
  posix_acl_xattr_entry entry;
  for (std::size_t begin = sizeof(posix_acl_xattr_header); begin + sizeof entry <= list.size(); begin += sizeof entry) {
    std::memcpy(&entry, &list[begin], sizeof entry);
    if (entry.e_tag == htole16(ACL_MASK)) entry.e_perm = 0;
    std::memcpy(&list[begin], &entry, sizeof entry);
  }
}

/// Reads an extended attribute. Returns false on an error that matters: without its ACL, the mode alone would let
/// others in.
bool readattribute(int file, const char* name, std::vector<Attributes::Extended>& extended) {
  Attributes::Extended attribute{name, {}};
  if (!fill(attribute.value, [=](char* value, std::size_t size) { return get(file, name, value, size); })) {
    return name != acl && notpermitted();
  }
  if (name == acl) clearmask(attribute.value);
  extended.push_back(std::move(attribute));
  return true;
}

bool readextended(int file, std::vector<Attributes::Extended>& extended) {
  std::string names;
  if (!fill(names, [=](char* buffer, std::size_t size) { return list(file, buffer, size); })) return errno == ENOTSUP;
  for (std::size_t begin = 0; begin < names.size(); begin += std::strlen(&names[begin]) + 1) {
    if (!readattribute(file, &names[begin], extended)) return false;
  }
  return true;
}

/// Gives the file its owner and group. Where that is not permitted, narrows the mode to what the group that the file
/// has instead may do. Returns false on any other error.
bool setowner(int file, const Attributes& attributes, mode_t& mode) {
  if (fchown(file, attributes.owner, attributes.group) == 0) return true;
  if (errno == EPERM && fchown(file, static_cast<uid_t>(-1), attributes.group) == 0) return true;
  mode = (mode & 0707) | ((mode & 07) << 3);
  return errno == EPERM;
}

/// Removes the ACL that a new file has from its directory.
bool removeacl(int file) { return fremovexattr(file, acl.data()) == 0 || errno == ENODATA || errno == ENOTSUP; }

bool setattribute(int file, const Attributes::Extended& attribute) {
  const std::string& value = attribute.value;
  return fsetxattr(file, attribute.name.c_str(), value.data(), value.size(), 0) == 0 ||
         (attribute.name != acl && notpermitted());
}

}  // namespace

std::optional<Attributes> attributesof(int file) {
  struct stat status = {};
  if (fstat(file, &status) != 0) return {};
  Attributes attributes{status.st_uid, status.st_gid, status.st_mode & 07777, {}};
  if (!readextended(file, attributes.extended)) return {};
  return attributes;
}

bool setattributes(int file, const Attributes& attributes) {
  mode_t mode = attributes.mode;
  if (!setowner(file, attributes, mode) || !removeacl(file)) return false;
  for (const Attributes::Extended& attribute : attributes.extended) {
    if (!setattribute(file, attribute)) return false;
  }
  return fchmod(file, mode) == 0;
}

}  // namespace tolvane
