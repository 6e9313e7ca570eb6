// Another process that holds a lock.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

namespace tolvane::test {

/// Locks a file or directory (LOCK_EX or LOCK_SH) in a process of its own, until it is released or destroyed. Then the
/// process does its last work, and ends.
class Locker {
 public:
  Locker(
      const std::filesystem::path& path, int operation, const std::function<void()>& lastly = [] {}) {
    int ready[2];
    int released[2];
    EXPECT_EQ(pipe2(ready, O_CLOEXEC), 0);
    EXPECT_EQ(pipe2(released, O_CLOEXEC), 0);
    child_ = fork();
    char byte = '0';
    if (child_ == 0) {
      (void)::close(released[1]);
      const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
      if (flock(file, operation) == 0) byte = '1';
      (void)!::write(ready[1], &byte, 1);
      (void)!::read(released[0], &byte, 1);
      lastly();
      _exit(0);
    }
    EXPECT_EQ(::read(ready[0], &byte, 1), 1);
    EXPECT_EQ(byte, '1') << path << " cannot be locked";
    for (const int number : {ready[0], ready[1], released[0]}) (void)::close(number);
    end_ = released[1];
  }
  Locker(const Locker&) = delete;
  Locker& operator=(const Locker&) = delete;
  ~Locker() { release(); }

  /// Closes this process's end, so that a forked child releases the lock. The destructor then does not wait.
  void leave() {
    (void)::close(end_);
    end_ = -1;
  }

  void release() {
    if (end_ < 0) return;
    (void)::close(end_);
    end_ = -1;
    (void)waitpid(child_, nullptr, 0);
  }

 private:
  pid_t child_ = -1;
  int end_ = -1;
};

}  // namespace tolvane::test
