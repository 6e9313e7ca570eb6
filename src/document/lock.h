// The lock that lets runs in the same directory, or on the same file, go one after the other.
//
// A run locks the directories of all files that it names before it reads any of them: a directory stays the same file
// while the files in it are replaced. It also locks each regular file that it works on, because a file can have names
// in several directories. All of these are locks of flock(2): the kernel releases them when the process ends, however
// it ends, and nothing stays behind. They bind only programs that ask for them. Where a file system knows no such
// locks, a run goes on without them.
//
// A descriptor that the process was started with may hold the lock already, as below `flock . tolvane update FILE`. Its
// owner waits for this run, so this run does not wait for the lock. Several runs below one such lock still wait for
// each other's files.
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
  using Clock = std::chrono::steady_clock;
  enum class Kind { alone, shared };

  /// A locked directory; without a descriptor and an identity if it cannot be opened.
  struct Directory {
    std::string path;
    Descriptor file;
    std::pair<dev_t, ino_t> identity;
  };

  /// How long a run waits for its locks, all together.
  static constexpr std::chrono::milliseconds patience = std::chrono::seconds(60);

  /// Locks the directories of one to three files, of which the first is the one that the run writes. While another run
  /// holds a lock, says so on standard error, once, and waits. Fatal ("Cannot open file %s for output.", with the first
  /// path) when the time is over, or when the system reports an error. A directory that does not exist or may not be
  /// read is not locked.
  explicit Lock(std::initializer_list<const char*> paths, std::chrono::milliseconds time = patience);

  /// Descriptor of the directory of one of the paths, for calls such as openat(2); AT_FDCWD if it cannot be opened.
  [[nodiscard]] int directory(const char* path) const;

  /// Locks an open file until it is closed, alone or shared with other readers. Waits as long as time is left, and is
  /// Fatal like the constructor.
  void add(int file, const char* path, Kind kind = Kind::alone);

  /// True when the time is over.
  [[nodiscard]] bool expired() const { return Clock::now() >= end_; }

 private:
  void acquire(int file, Kind kind, const char* name);

  const char* path_;
  Clock::time_point end_;
  bool told_ = false;
  std::array<Directory, 3> directories_;
};

}  // namespace tolvane
