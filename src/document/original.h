// The file that a command works on, as it stood when the command opened it.
//
// Everything that is done to it later is done to this very file, in this very directory, or not at all: by then its
// name may stand for another file, and its directory's path for another directory.
#pragma once

#include <sys/stat.h>

#include <cstdio>

#include "document/descriptor.h"
#include "document/lock.h"
#include "document/text.h"

namespace tolvane {

class Original {
 public:
  /// Opens a file for reading, and locks it if it is a regular file. Fatal when it cannot be opened. The lock has to
  /// live as long as the original.
  static Original opened(Lock& lock, const char* path, Lock::Kind kind = Lock::Kind::alone);

  /// Looks at a file that is to be replaced but not read, and locks it if it can be opened. It may be missing, or a
  /// link that leads nowhere. After any other error it has no descriptor.
  static Original replaced(Lock& lock, const char* path);

  [[nodiscard]] const char* path() const { return path_; }
  [[nodiscard]] bool missing() const { return missing_; }
  [[nodiscard]] bool regular() const { return S_ISREG(status_.st_mode); }
  /// Its descriptor for looking at the file, -1 for none.
  [[nodiscard]] int file() const { return file_.number(); }

  /// Returns a stream that reads the opened file, once. Null, with errno set, on error.
  [[nodiscard]] std::FILE* stream();

  [[nodiscard]] Lock& lock() const { return *lock_; }

  /// Its directory, and the names there of the file and of one whose path begins like the file's: for calls such as
  /// openat(2).
  [[nodiscard]] int directory() const { return directory_; }
  [[nodiscard]] const char* name() const { return path_ + prefix_; }
  [[nodiscard]] const char* nameof(const Text& sibling) const { return sibling.c_str() + prefix_; }

  /// True if that is the status of this file.
  [[nodiscard]] bool is(const struct stat& status) const;

  /// True if the name, symbolic links followed, stands for this file; of a missing file, if it stands for none.
  [[nodiscard]] bool stands(const char* name) const;

 private:
  Original(Lock& lock, const char* path);
  static Original notregular(Original original);
  [[nodiscard]] bool lockedin(Lock::Kind kind);
  [[nodiscard]] Descriptor open(int flags) const;

  Lock* lock_;
  const char* path_;
  int directory_;
  std::size_t prefix_;  // length of what stands before the name in the path
  Descriptor file_;
  Descriptor reading_;
  struct stat status_ = {};
  bool missing_ = false;
};

}  // namespace tolvane
