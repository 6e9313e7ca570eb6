#include "preview/plan.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "document/ends.h"
#include "document/names.h"

namespace tolvane {

namespace {

bool islink(const char* path) {
  struct stat status = {};
  return lstat(path, &status) == 0 && S_ISLNK(status.st_mode);
}

/// Why there would be no backup; empty when there would.
std::string backupobstacle(Standing standing) {
  if (standing == Standing::full) return "a folder that is not empty has this name";
  return standing == Standing::toolong ? "this name is too long for the file system" : "";
}

std::string temporaryobstacle(Standing standing) {
  return standing == Standing::toolong ? std::strerror(ENAMETOOLONG) : "it is there and no plain file";
}

Backup backupunder(const Text& name, const char* path) {
  const Standing standing = standingunder(AT_FDCWD, name.c_str());
  const bool replaces = removable(standing) || standing == Standing::full;
  return {std::string(name), replaces, islink(path), backupobstacle(standing)};
}

void plan(Preview& preview, const Text& temporary, const Text& name) {
  const Standing standing = standingunder(AT_FDCWD, temporary.c_str());
  if (!givesway(standing)) {
    const std::string message = cannotopen(temporary.c_str()).message;
    preview.messages += message + '\n';
    preview.trouble = {.message = message + " (" + temporaryobstacle(standing) + ')'};
  } else if (losescontents(temporary, name)) {
    preview.lost = true;
  } else {
    preview.backup = backupunder(name, preview.request.path);
  }
}

}  // namespace

void planbackup(Preview& preview, std::string_view suffix) {
  try {
    plan(preview, temporaryname(preview.request.path), backupname(preview.request.path, suffix));
  } catch (const TextTooLong&) {
    preview.trouble = {.message =
                           "The name of the temporary file or of the backup would be longer than 511 characters."};
  }
}

}  // namespace tolvane
