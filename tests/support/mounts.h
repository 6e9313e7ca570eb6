// Mounts in a private mount namespace, invisible to other processes.
#pragma once

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>

namespace tolvane::test {

/// Mounts a file system until it is destroyed. Needs root. The process stays in the new namespace.
class Mount {
 public:
  Mount(const std::string& source, const std::filesystem::path& target, const char* type, unsigned long flags,
        const std::string& options)
      : target_(target) {
    mounted_ = unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount(source.c_str(), target.c_str(), type, flags, options.c_str()) == 0;
    if (!mounted_) reason_ = std::strerror(errno);
  }
  Mount(const Mount&) = delete;
  Mount& operator=(const Mount&) = delete;
  ~Mount() {
    if (mounted_) umount2(target_.c_str(), MNT_DETACH);
  }

  [[nodiscard]] bool mounted() const { return mounted_; }
  [[nodiscard]] const std::string& reason() const { return reason_; }

 private:
  std::filesystem::path target_;
  bool mounted_ = false;
  std::string reason_;
};

}  // namespace tolvane::test
