// A file as it was when the command opened it. Later operations act on this file, in this directory, or fail: another
// process may have changed the path in the meantime.
#pragma once

#include <sys/stat.h>

#include <string>

#include "document/descriptor.h"
#include "document/lock.h"
#include "document/text.h"

namespace tolvane {

class Original {
 public:
  /// Opens a file for reading, and locks it if it is a regular file. Throws Fatal ("Cannot open file %s for input.") if
  /// the file cannot be opened, and std::bad_alloc if there is no memory. `lock` and `path` must outlive the original.
  static Original opened(Lock& lock, const char* path, Lock::Kind kind = Lock::Kind::exclusive);

  /// Opens a file that the run replaces but does not read. Locks it if it is a regular file that the caller may read.
  /// missing() is true if there is no file, or only a symbolic link that leads nowhere. On any other error, file() is
  /// -1.
  static Original replaced(Lock& lock, const char* path);

  [[nodiscard]] const char* path() const { return path_; }
  [[nodiscard]] bool missing() const { return missing_; }
  [[nodiscard]] bool regular() const { return S_ISREG(status_.st_mode); }
  /// Returns the size in bytes when it was opened, 0 unless it is a regular file.
  [[nodiscard]] std::size_t size() const { return regular() ? static_cast<std::size_t>(status_.st_size) : 0; }
  /// Returns the descriptor for attributes and identity, -1 if there is none.
  [[nodiscard]] int file() const { return file_.number(); }

  /// Reads the opened file. Call it once. A directory counts as an empty file. Throws Fatal ("Cannot open file %s for
  /// input.") if the file cannot be read to its end.
  [[nodiscard]] std::string bytes();

  [[nodiscard]] Lock& lock() const { return *lock_; }

  /// The directory for calls such as openat(2), and in it the names of the file and of a file whose path begins with
  /// the same directory.
  [[nodiscard]] int directory() const { return directory_; }
  [[nodiscard]] const char* name() const { return path_ + prefix_; }
  [[nodiscard]] const char* nameof(const Text& sibling) const { return sibling.c_str() + prefix_; }

  /// Returns true if the status has the device and inode of this file.
  [[nodiscard]] bool is(const struct stat& status) const;

  /// Returns true if the name (following symbolic links) refers to this file. If the file is missing, returns true if
  /// the name refers to no file.
  [[nodiscard]] bool isnamed(const char* name) const;

 private:
  Original(Lock& lock, const char* path);
  static Original notregular(Original original);
  [[nodiscard]] bool lockedin(Lock::Kind kind);
  [[nodiscard]] Descriptor open(int flags) const;

  Lock* lock_;
  const char* path_;
  int directory_;
  std::size_t prefix_ = 0;  // length of the directory in the path
  Descriptor file_;
  Descriptor reading_;
  struct stat status_ = {};
  bool missing_ = false;
};

}  // namespace tolvane
