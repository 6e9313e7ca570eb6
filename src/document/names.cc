#include "document/names.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

#include "document/descriptor.h"

namespace tolvane {

namespace {

/// Returns true if the directory has no entries but "." and "..". One that cannot be read counts as full.
bool isempty(int directory, const char* name) {
  Descriptor opened{openat(directory, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)};
  const std::unique_ptr<DIR, int (*)(DIR*)> entries{fdopendir(opened.number()), closedir};
  if (entries == nullptr) return false;
  opened.release();
  int count = 0;
  while (count < 3 && readdir(entries.get()) != nullptr) ++count;
  return count < 3;
}

}  // namespace

Text temporaryname(const char* path) { return Text(std::string_view(path), "_tmp"); }
Text backupname(const char* path, std::string_view suffix) { return Text(std::string_view(path), '_', suffix); }

bool losescontents(const Text& temporary, const Text& backup) { return temporary == backup; }

Standing standingunder(int directory, const char* name) {
  struct stat status = {};
  if (fstatat(directory, name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return errno == ENAMETOOLONG ? Standing::toolong : Standing::nothing;
  }
  if (S_ISREG(status.st_mode)) return Standing::regular;
  if (S_ISLNK(status.st_mode)) return Standing::link;
  return S_ISDIR(status.st_mode) ? Standing::directory : Standing::other;
}

bool preventsbackup(int directory, const char* name) {
  const Standing standing = standingunder(directory, name);
  return standing == Standing::toolong || (standing == Standing::directory && !isempty(directory, name));
}

bool removed(int directory, const char* name) {
  return unlinkat(directory, name, 0) == 0 || (errno == EISDIR && unlinkat(directory, name, AT_REMOVEDIR) == 0);
}

}  // namespace tolvane
