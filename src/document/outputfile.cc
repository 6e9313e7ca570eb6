#include "document/outputfile.h"

#include <endian.h>
#include <fcntl.h>
#include <linux/limits.h>
#include <linux/posix_acl.h>
#include <linux/posix_acl_xattr.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <span>
#include <string>

namespace tolvane {

namespace {

Fatal cannotwrite() { return Fatal{"Error writing output file"}; }

bool writeall(int file, std::string_view contents) {
  while (!contents.empty()) {
    const ssize_t written = write(file, contents.data(), contents.size());
    if (written >= 0) {
      contents.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return false;
    }
  }
  return true;
}

/// True when the file is on its disk, or on none.
bool sync(int file) {
  while (fsync(file) != 0) {
    if (errno == EINVAL || errno == ENOTSUP || errno == EROFS) return true;
    if (errno != EINTR) return false;
  }
  return true;
}

constexpr const char* accesslist = "system.posix_acl_access";

/// Takes from a new file the access list that it has from its folder: its model may have none.
bool dropaccesslist(int file) { return fremovexattr(file, accesslist) == 0 || errno == ENODATA || errno == ENOTSUP; }

/// Closes an access list to all but the owner and those whom nothing names, until the mode is set and opens it again.
void closemask(std::span<char> list) {
  posix_acl_xattr_entry entry;
  for (std::size_t begin = sizeof(posix_acl_xattr_header); begin + sizeof entry <= list.size(); begin += sizeof entry) {
    std::memcpy(&entry, &list[begin], sizeof entry);
    if (entry.e_tag == htole16(ACL_MASK)) entry.e_perm = 0;
    std::memcpy(&list[begin], &entry, sizeof entry);
  }
}

/// Copies an extended attribute. False when the disk is full or fails, and when an access list cannot be copied: the
/// mode alone would let others in.
bool copyattribute(const char* model, int file, const char* name) {
  std::array<char, XATTR_SIZE_MAX> value;
  const bool list = std::strcmp(name, accesslist) == 0;
  const ssize_t length = getxattr(model, name, value.data(), value.size());
  const std::size_t size = length < 0 ? 0 : static_cast<std::size_t>(length);
  if (list) closemask({value.data(), size});
  if (length >= 0 && fsetxattr(file, name, value.data(), size, 0) == 0) return true;
  return !list && errno != ENOSPC && errno != EDQUOT && errno != EIO;
}

/// Copies the extended attributes that the caller may copy.
bool copyattributes(const char* model, int file) {
  std::array<char, XATTR_LIST_MAX> names;
  const ssize_t length = listxattr(model, names.data(), names.size());
  if (length < 0) return errno == ENOTSUP;
  for (ssize_t begin = 0; begin < length;) {
    const char* const name = &names[static_cast<std::size_t>(begin)];
    if (!copyattribute(model, file, name)) return false;
    begin += static_cast<ssize_t>(std::strlen(name)) + 1;
  }
  return true;
}

/// Gives the file owner, group, extended attributes and mode of the model.
bool liken(int file, const char* model, const struct stat& status) {
  mode_t mode = status.st_mode & 07777;
  if (fchown(file, status.st_uid, status.st_gid) != 0 && fchown(file, static_cast<uid_t>(-1), status.st_gid) != 0) {
    // The file has another group now, and that gets no more than everybody has.
    mode = (mode & 0707) | ((mode & 07) << 3);
  }
  return dropaccesslist(file) && copyattributes(model, file) && fchmod(file, mode) == 0;
}

/// Reads what is left of a file, of about that many bytes.
bool readall(int file, std::size_t size, std::string& contents) {
  contents.resize(size + 1);  // one more, so that its end is seen without growing
  std::size_t length = 0;
  while (true) {
    const ssize_t count = read(file, &contents[length], contents.size() - length);
    if (count == 0) break;
    if (count < 0 && errno != EINTR) return false;
    if (count > 0) length += static_cast<std::size_t>(count);
    if (length == contents.size()) contents.resize(2 * length);
  }
  contents.resize(length);
  return true;
}

/// Whether this process may write a file of that many bytes. Reserving room does not ask.
bool allowed(std::size_t size) {
  rlimit limit = {};
  return getrlimit(RLIMIT_FSIZE, &limit) != 0 || size <= limit.rlim_cur;
}

/// Reserves the room for that many bytes; the file stays as long as it is. Where nothing can be reserved, true.
bool reserve(int file, std::size_t size) {
  while (fallocate(file, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) != 0) {
    if (errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP) return true;
    if (errno != EINTR) return false;
  }
  return true;
}

/// Makes the contents those of a plain file.
bool rewrite(int file, std::string_view contents) {
  return lseek(file, 0, SEEK_SET) == 0 && writeall(file, contents) &&
         ftruncate(file, static_cast<off_t>(contents.size())) == 0 && sync(file);
}

bool writeoverplain(int file, std::size_t size, std::string_view contents) {
  std::string old;
  if (!readall(file, size, old)) return false;
  if (!allowed(contents.size()) || !reserve(file, contents.size())) return false;
  if (rewrite(file, contents)) return true;
  (void)rewrite(file, old);
  return false;
}

bool writeover(int file, std::string_view contents) {
  struct stat status = {};
  if (fstat(file, &status) != 0) return false;
  if (S_ISREG(status.st_mode)) return writeoverplain(file, static_cast<std::size_t>(status.st_size), contents);
  return writeall(file, contents) && sync(file);
}

/// Opens a file to write over it, and a plain one also to read it: a pipe opened for both would wait for no reader.
int openover(const char* path) {
  struct stat status = {};
  const bool plain = stat(path, &status) != 0 || S_ISREG(status.st_mode);
  return open(path, (plain ? O_RDWR : O_WRONLY) | O_CREAT | O_CLOEXEC, 0666);
}

}  // namespace

Fatal cannotopen(const char* path) { return Fatal{"Cannot open file ", path, " for output."}; }

void createlike(const char* model, const char* path, std::string_view contents) {
  struct stat status = {};
  if (lstat(path, &status) == 0 && (!S_ISREG(status.st_mode) || unlink(path) != 0)) throw cannotopen(path);
  const bool like = stat(model, &status) == 0;
  const bool missing = !like && errno == ENOENT;
  // Until it is like its model the new file is its writer's alone. O_EXCL follows no link that somebody puts there now.
  const int file = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, missing ? 0666 : 0600);
  if (file < 0) throw cannotopen(path);
  bool written = writeall(file, contents);
  written = written && (!like || liken(file, model, status)) && sync(file);
  written = close(file) == 0 && written;
  if (written) return;
  (void)unlink(path);
  throw cannotwrite();
}

void overwrite(const char* path, std::string_view contents) {
  const int file = openover(path);
  if (file < 0) throw cannotopen(path);
  bool written = writeover(file, contents);
  written = close(file) == 0 && written;
  if (!written) throw cannotwrite();
}

void syncfolder(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  const std::string folder{slash == std::string_view::npos ? "." : path.substr(0, slash + 1)};
  const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return;
  (void)fsync(file);
  (void)close(file);
}

}  // namespace tolvane
