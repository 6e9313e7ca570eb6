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

/// Opens the directory of a file. A directory that may not be read cannot be locked, but names in it can be looked up.
Lock::Directory opendirectory(const char* path) {
  Lock::Directory directory;
  directory.path = directoryof(path);
  directory.file = Descriptor{open(directory.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
  if (!directory.file.open())
    directory.file = Descriptor{open(directory.path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};
  struct stat status = {};
  if (fstat(directory.file.number(), &status) == 0) directory.identity = identity(status);
  return directory;
}

/// A line of fdinfo (see proc(5)) that tells of a lock of flock(2): of any such lock, or only of one that is exclusive.
bool tellsoflock(std::string_view line, bool exclusive) {
  return line.starts_with("lock:") && line.find(" FLOCK ") != std::string_view::npos &&
         (!exclusive || line.find(" WRITE ") != std::string_view::npos);
}

/// True if this very descriptor holds a lock.
bool holdslock(const char* number, bool exclusive) {
  const std::string path = std::string("/proc/self/fdinfo/") + number;
  const std::unique_ptr<std::FILE, decltype([](std::FILE* file) { (void)std::fclose(file); })> file{
      std::fopen(path.c_str(), "re")};
  std::array<char, 256> line;
  while (file != nullptr && std::fgets(line.data(), line.size(), file.get()) != nullptr) {
    if (tellsoflock(line.data(), exclusive)) return true;
  }
  return false;
}

/// True if a descriptor of this process, which it can only have been started with, holds the lock on the file. Without
/// /proc, none does.
bool inherited(int file, bool exclusive) {
  struct stat wanted = {};
  const std::unique_ptr<DIR, decltype([](DIR* open) { (void)closedir(open); })> descriptors{opendir("/proc/self/fd")};
  if (descriptors == nullptr || fstat(file, &wanted) != 0) return false;
  while (const dirent* const entry = readdir(descriptors.get())) {
    struct stat status = {};
    if (fstatat(dirfd(descriptors.get()), entry->d_name, &status, 0) != 0) continue;
    if (identity(status) == identity(wanted) && holdslock(entry->d_name, exclusive)) return true;
  }
  return false;
}

void rest() {
  constexpr timespec time{0, 5'000'000};
  (void)nanosleep(&time, nullptr);
}

/// Locks an open file (LOCK_EX or LOCK_SH). Returns false if somebody else holds the lock until the time is over.
bool acquire(int file, int operation, std::string_view name, Clock::time_point end) {
  bool told = false;
  while (flock(file, operation | LOCK_NB) != 0) {
    if (errno == EINTR) continue;
    if (errno != EWOULDBLOCK) return true;  // the file system, or a rule of the system, knows no such locks
    if (!told && inherited(file, operation == LOCK_EX)) return true;
    if (!told) complain({"waiting for another run, which has locked ", name});
    told = true;
    if (Clock::now() >= end) return false;
    rest();
  }
  return true;
}

}  // namespace

Lock::Lock(std::initializer_list<const char*> paths, std::chrono::milliseconds time)
    : path_(*paths.begin()), end_(Clock::now() + time) {
  std::transform(paths.begin(), paths.end(), directories_.begin(), opendirectory);
  directory_ = directories_[0].file.open() ? directories_[0].file.number() : AT_FDCWD;
  // Every run takes its locks in the same order, so that no two wait for each other.
  const std::span<Directory> named{directories_.data(), paths.size()};
  std::sort(named.begin(), named.end(),
            [](const Directory& one, const Directory& other) { return one.identity < other.identity; });
  for (const Directory* before = nullptr; const Directory& directory : named) {
    const bool locked = before != nullptr && before->identity == directory.identity;
    if (!locked && !acquire(directory.file.number(), LOCK_EX, directory.path, end_)) throw cannotopen(path_);
    before = &directory;
  }
}

void Lock::add(int file, const char* path) const {
  if (!acquire(file, LOCK_EX, path, end_)) throw cannotopen(path_);
}

std::FILE* openshared(const char* path) {
  std::FILE* const file = std::fopen(path, "re");
  struct stat status = {};
  if (file == nullptr || fstat(fileno(file), &status) != 0 || !S_ISREG(status.st_mode)) return file;
  if (acquire(fileno(file), LOCK_SH, path, Clock::now() + Lock::patience)) return file;
  (void)std::fclose(file);
  errno = EWOULDBLOCK;
  return nullptr;
}

}  // namespace tolvane
