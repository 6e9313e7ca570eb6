#include "document/lock.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "document/ends.h"
#include "document/messages.h"

namespace tolvane {

namespace {

using Clock = Lock::Clock;

std::string directoryof(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return std::string(slash == std::string_view::npos ? "." : path.substr(0, slash + 1));
}

/// True if the error says that there is no directory to lock, or none that may be read, and not that something failed.
bool unlockable(int error) {
  return error == ENOENT || error == ENOTDIR || error == ELOOP || error == ENAMETOOLONG || error == EACCES ||
         error == EPERM;
}

/// Opens the directory of a file. Of one that may not be read only the names can be looked up.
Lock::Directory opendirectory(const char* path) {
  Lock::Directory directory;
  directory.path = directoryof(path);
  directory.file = Descriptor{open(directory.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
  if (!directory.file.open() && !unlockable(errno)) throw cannotopen(path);
  if (!directory.file.open())
    directory.file = Descriptor{open(directory.path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
  struct stat status = {};
  if (fstat(directory.file.number(), &status) == 0) directory.identity = identity(status);
  return directory;
}

/// True if this very descriptor holds a lock of flock(2). Its lines in fdinfo (see proc(5)) say so.
bool holdslock(const char* number) {
  const std::string path = std::string("/proc/self/fdinfo/") + number;
  const std::unique_ptr<std::FILE, decltype([](std::FILE* file) { (void)std::fclose(file); })> file{
      std::fopen(path.c_str(), "re")};
  std::array<char, 256> line;
  while (file != nullptr && std::fgets(line.data(), line.size(), file.get()) != nullptr) {
    const std::string_view text = line.data();
    if (text.starts_with("lock:") && text.find(" FLOCK ") != std::string_view::npos) return true;
  }
  return false;
}

/// True if a descriptor that this process was started with holds a lock on the file. Without /proc, false.
bool inherited(int file) {
  struct stat wanted = {};
  const std::unique_ptr<DIR, decltype([](DIR* open) { (void)closedir(open); })> descriptors{opendir("/proc/self/fd")};
  if (descriptors == nullptr || fstat(file, &wanted) != 0) return false;
  while (const dirent* const entry = readdir(descriptors.get())) {
    struct stat status = {};
    if (fstatat(dirfd(descriptors.get()), entry->d_name, &status, 0) != 0) continue;
    if (identity(status) == identity(wanted) && holdslock(entry->d_name)) return true;
  }
  return false;
}

void rest() {
  constexpr timespec time{0, 5'000'000};
  (void)nanosleep(&time, nullptr);
}

/// True if the error of flock(2) says that the file system knows no such locks, or that a rule of the system forbids
/// them.
bool withoutlocks(int error) {
  return error == EBADF || error == EINVAL || error == ENOLCK || error == ENOSYS || error == ENOTSUP ||
         error == EACCES || error == EPERM;
}

}  // namespace

Lock::Lock(std::initializer_list<const char*> paths, std::chrono::milliseconds time)
    : path_(*paths.begin()), end_(Clock::now() + time) {
  std::transform(paths.begin(), paths.end(), directories_.begin(), opendirectory);
  // Every run takes its locks in the same order, so that no two wait for each other.
  const std::span<Directory> named{directories_.data(), paths.size()};
  std::sort(named.begin(), named.end(),
            [](const Directory& one, const Directory& other) { return one.identity < other.identity; });
  for (const Directory* before = nullptr; const Directory& directory : named) {
    const bool locked = before != nullptr && before->identity == directory.identity;
    if (!locked) acquire(directory.file.number(), Kind::alone, directory.path.c_str());
    before = &directory;
  }
}

int Lock::directory(const char* path) const {
  const auto* const found = std::find_if(directories_.begin(), directories_.end(), [=](const Directory& directory) {
    return directory.file.open() && directory.path == directoryof(path);
  });
  return found == directories_.end() ? AT_FDCWD : found->file.number();
}

void Lock::add(int file, const char* path, Kind kind) { acquire(file, kind, path); }

void Lock::acquire(int file, Kind kind, const char* name) {
  const int operation = (kind == Kind::alone ? LOCK_EX : LOCK_SH) | LOCK_NB;
  for (bool first = true; flock(file, operation) != 0; first = false) {
    if (errno == EINTR) continue;
    if (withoutlocks(errno)) return;
    if (errno != EWOULDBLOCK) throw cannotopen(path_);
    if (first && inherited(file)) return;
    if (!std::exchange(told_, true)) complain({"waiting for another run, which has locked ", name});
    if (expired()) throw cannotopen(path_);
    rest();
  }
}

}  // namespace tolvane
