#include "document/lock.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>

#include "document/ends.h"
#include "document/messages.h"

namespace tolvane {

namespace {

std::string directoryof(std::string_view path) {
  const std::size_t slash = path.rfind('/');
  return std::string(slash == std::string_view::npos ? "./" : path.substr(0, slash + 1));
}

/// Returns true if the error says that the directory is missing or may not be read.
bool unlockable(int error) {
  return error == ENOENT || error == ENOTDIR || error == ELOOP || error == ENAMETOOLONG || error == EACCES ||
         error == EPERM;
}

/// Opens the directory of a file. Opens a directory without read permission with O_PATH: openat(2) accepts that
/// descriptor, flock(2) does not. Any other error is one of the file that the run writes.
Lock::Directory opendirectory(const char* path, const std::string& written) {
  Lock::Directory directory;
  directory.path = directoryof(path);
  directory.file = Descriptor{open(directory.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
  if (!directory.file.isopen() && !unlockable(errno)) throw cannotopen(written.c_str());
  if (!directory.file.isopen())
    directory.file = Descriptor{open(directory.path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
  struct stat status = {};
  directory.wanted = stat(path, &status) != 0 || S_ISREG(status.st_mode);
  if (fstat(directory.file.number(), &status) == 0) directory.identity = identity(status);
  return directory;
}

/// Returns true if this descriptor holds a flock(2) lock, according to its fdinfo (see proc(5)).
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

/// Returns true if any descriptor of this process holds a lock on the file. Returns false without /proc.
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

/// Returns true if the error of flock(2) says that the file cannot be locked: there is no descriptor, it is open with
/// O_PATH, the file system does not support the lock, or a security policy forbids it.
bool cannotlock(int error) {
  return error == EBADF || error == EINVAL || error == ENOLCK || error == ENOSYS || error == ENOTSUP ||
         error == EACCES || error == EPERM;
}

}  // namespace

Lock::Lock(std::initializer_list<const char*> paths, std::chrono::milliseconds time)
    : path_(*paths.begin()), left_(time) {
  std::transform(paths.begin(), paths.end(), directories_.begin(),
                 [this](const char* path) { return opendirectory(path, path_); });
  for (Directory& directory : directories_) {
    const auto same = [&](const Directory& other) {
      return &other < &directory && other.wanted && other.identity == directory.identity;
    };
    // A second lock of one directory would wait for the first.
    if (std::any_of(directories_.begin(), directories_.end(), same)) directory.wanted = false;
  }
  while (!takendirectories()) wait();
}

int Lock::directory(const char* path) const {
  const auto* const found = std::find_if(directories_.begin(), directories_.end(), [=](const Directory& directory) {
    return directory.file.isopen() && directory.path == directoryof(path);
  });
  return found == directories_.end() ? AT_FDCWD : found->file.number();
}

bool Lock::add(int file, const char* path, Kind kind) {
  if (taken(file, kind, path)) return true;
  releasedirectories();
  do {
    wait();
  } while (!takendirectories());
  return false;
}

/// Locks an open file if no other process holds the lock, or if this process has inherited it.
bool Lock::taken(int file, Kind kind, const char* name) {
  const int operation = (kind == Kind::exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB;
  while (flock(file, operation) != 0) {
    if (errno == EINTR) continue;
    if (cannotlock(errno)) return true;
    if (errno != EWOULDBLOCK) throw cannotopen(path_.c_str());
    if (inherited(file)) return true;
    if (!std::exchange(reported_, true)) complain({"waiting for the lock on ", name});
    return false;
  }
  return true;
}

/// Locks all directories, or none.
bool Lock::takendirectories() {
  const bool all = std::all_of(directories_.begin(), directories_.end(), [this](const Directory& directory) {
    return !directory.wanted || taken(directory.file.number(), Kind::exclusive, directory.path.c_str());
  });
  if (!all) releasedirectories();
  return all;
}

void Lock::releasedirectories() {
  for (const Directory& directory : directories_) (void)flock(directory.file.number(), LOCK_UN);
}

void Lock::wait() {
  using Clock = std::chrono::steady_clock;
  if (left_.count() <= 0) throw cannotopen(path_.c_str());
  const Clock::time_point before = Clock::now();
  constexpr timespec moment{0, 5'000'000};
  (void)nanosleep(&moment, nullptr);
  left_ -= Clock::now() - before;
}

}  // namespace tolvane
