// Open file descriptors that are closed when their owner goes, and the identity of a file.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace tolvane {

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

  [[nodiscard]] bool open() const { return number_ >= 0; }
  [[nodiscard]] int number() const { return number_; }

  /// Leaves it open and to the caller.
  int release() { return std::exchange(number_, -1); }

  /// Returns false if the system reports an error of an earlier write. Does nothing without a descriptor.
  bool close() { return number_ < 0 || ::close(release()) == 0; }

 private:
  int number_ = -1;
};

/// What tells one file from every other, whatever names it has.
inline std::pair<dev_t, ino_t> identity(const struct stat& status) { return {status.st_dev, status.st_ino}; }

}  // namespace tolvane
