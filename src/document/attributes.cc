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

/// A path to an open file, for one that is open with O_PATH: calls on its descriptor fail with EBADF.
std::string pathof(int file) { return "/proc/self/fd/" + std::to_string(file); }

ssize_t list(int file, char* names, std::size_t size) {
  const ssize_t length = flistxattr(file, names, size);
  return length < 0 && errno == EBADF ? listxattr(pathof(file).c_str(), names, size) : length;
}

ssize_t get(int file, const char* name, char* value, std::size_t size) {
  const ssize_t length = fgetxattr(file, name, value, size);
  return length < 0 && errno == EBADF ? getxattr(pathof(file).c_str(), name, value, size) : length;
}

/// Returns true if an extended attribute can be left out: it is not permitted, not supported, or gone.
bool skippable() {
  return errno == EPERM || errno == EACCES || errno == ENODATA || errno == ENOTSUP || errno == EINVAL;
}

/// Fills the text by a call that writes into a buffer and, for none, returns the size that it needs. Returns false on
/// error.
template <typename Call>
bool fill(std::string& text, const Call& call) {
  ssize_t length = 0;
  do {
    const ssize_t needed = call(nullptr, 0);
    if (needed < 0) return false;
    text.resize(static_cast<std::size_t>(needed));
    if (needed == 0) return true;
    length = call(text.data(), text.size());
  } while (length < 0 && errno == ERANGE);  // it grew between the two calls
  text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
  return length >= 0;
}

/// Clears the ACL mask; fchmod() restores it.
void clearmask(std::string& list) {
  posix_acl_xattr_entry entry;
  for (std::size_t begin = sizeof(posix_acl_xattr_header); begin + sizeof entry <= list.size(); begin += sizeof entry) {
    std::memcpy(&entry, &list[begin], sizeof entry);
    if (entry.e_tag == htole16(ACL_MASK)) entry.e_perm = 0;
    std::memcpy(&list[begin], &entry, sizeof entry);
  }
}

/// Reads an extended attribute. Returns false if it is the ACL and cannot be read, or on an error that is not
/// skippable. Without the ACL, the mode could give the group more rights than before.
bool readattribute(int file, const char* name, std::vector<Attributes::Extended>& extended) {
  Attributes::Extended attribute{name, {}};
  if (!fill(attribute.value, [=](char* value, std::size_t size) { return get(file, name, value, size); })) {
    return name != acl && skippable();
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

/// Returns true if the caller may not set this owner or group: EINVAL is for one that its user namespace does not map.
bool maynotown() { return errno == EPERM || errno == EINVAL; }

/// Sets owner and group. If that is not permitted, limits the rights of the group in the mode to those of others.
/// Returns false on any other error.
bool setowner(int file, const Attributes& attributes, mode_t& mode) {
  if (fchown(file, attributes.owner, attributes.group) == 0) return true;
  if (maynotown() && fchown(file, static_cast<uid_t>(-1), attributes.group) == 0) return true;
  mode = (mode & 0707) | ((mode & 07) << 3);
  return maynotown();
}

/// Removes the ACL that a new file inherits from its directory.
bool removeacl(int file) { return fremovexattr(file, acl.data()) == 0 || errno == ENODATA || errno == ENOTSUP; }

bool setattribute(int file, const Attributes::Extended& attribute) {
  const std::string& value = attribute.value;
  return fsetxattr(file, attribute.name.c_str(), value.data(), value.size(), 0) == 0 ||
         (attribute.name != acl && skippable());
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
