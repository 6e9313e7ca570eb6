// The lock that makes runs on the same file, or in the same directory, take turns.
//
// A run locks the directories of all files that it names before it reads any of them: a directory keeps its inode while
// the files in it are replaced. A run also locks each regular file that it works on, because a file can have names in
// several directories. All of these are flock(2) locks: the kernel releases them when the process ends, and nothing
// stays behind. They bind only programs that ask for them. Where flock(2) is not supported, a run goes on without them.
//
// A run never waits while it holds a lock: it releases what it holds, and starts again. So nobody waits in a circle,
// not even with wrappers that hold a lock of their own.
//
// The process can inherit a descriptor that already holds the lock, as under `flock . tolvane update FILE`. The run
// then does not wait for this lock. Several runs under one such lock still take turns on each file.
#pragma once

#include <array>
#include <chrono>
#include <initializer_list>
#include <string>
#include <utility>

#include "document/descriptor.h"

namespace tolvane {

class Lock {
 public:
  enum class Kind { exclusive, shared };

  /// A locked directory. If it cannot be opened, it has no descriptor and no identity.
  struct Directory {
    std::string path;
    Descriptor file;
    std::pair<dev_t, ino_t> identity;
    bool wanted = true;  // to be locked
  };

  /// Total time that a run waits for all of its locks.
  static constexpr std::chrono::milliseconds timeout = std::chrono::seconds(60);

  /// Locks the directories of one to three files. The first file is the one that the run writes. If another process
  /// holds a lock, prints one message on standard error and waits. Throws Fatal ("Cannot open file %s for output.",
  /// with the first path) on timeout and on a system error. Does not lock a directory that is missing or may not be
  /// read, nor for a file that is not a regular file, such as a pipe.
  Lock(std::initializer_list<const char*> paths, std::chrono::milliseconds time = timeout);

  /// Returns the descriptor of the directory of one of the paths, for calls such as openat(2). Returns AT_FDCWD if the
  /// directory cannot be opened.
  [[nodiscard]] int directory(const char* path) const;

  /// Locks an open file until its last descriptor is closed. `path` is for the message. Does nothing if the file cannot
  /// be locked. If another process holds the lock, releases the directories, waits and locks them again, and returns
  /// false: by then the name may refer to another file. Throws like the constructor.
  [[nodiscard]] bool add(int file, const char* path, Kind kind = Kind::exclusive);

  /// Waits for a moment. Throws Fatal like the constructor if the run has waited for the timeout, all waits together.
  void wait();

 private:
  [[nodiscard]] bool taken(int file, Kind kind, const char* name);
  [[nodiscard]] bool takendirectories();
  void releasedirectories();

  std::string path_;
  std::chrono::nanoseconds left_;  // to wait
  bool reported_ = false;
  std::array<Directory, 3> directories_;
};

}  // namespace tolvane
