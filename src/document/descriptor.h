// An owned file descriptor, and the identity of a file.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace tolvane {

/// Owns a file descriptor and closes it on destruction.
class Descriptor {
 public:
  Descriptor() = default;
  /// Takes what open(2) returned: -1 is no descriptor.
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { (void)close(); }

  [[nodiscard]] bool isopen() const { return number_ >= 0; }
  /// Returns the descriptor, -1 if there is none.
  [[nodiscard]] int number() const { return number_; }

  /// Returns the descriptor and gives up ownership; -1 if there is none.
  int release() { return std::exchange(number_, -1); }

  /// Returns false on error. Does nothing without a descriptor.
  bool close() { return number_ < 0 || ::close(release()) == 0; }

 private:
  int number_ = -1;
};

/// Device and inode, which identify a file.
inline std::pair<dev_t, ino_t> identity(const struct stat& status) { return {status.st_dev, status.st_ino}; }

}  // namespace tolvane
