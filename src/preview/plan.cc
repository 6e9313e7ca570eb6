#include "preview/plan.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "document/ends.h"
#include "document/names.h"

namespace tolvane {

namespace {

std::string temporaryobstacle(Standing standing) {
  return standing == Standing::toolong ? std::strerror(ENAMETOOLONG) : "it is there and no plain file";
}

/// Why there would be no backup; empty when there would.
std::string backupobstacle(const Text& name, Standing standing) {
  if (!preventsbackup(AT_FDCWD, name.c_str())) return {};
  return standing == Standing::toolong ? "this name is too long for the file system"
                                       : "a folder that is not empty has this name";
}

Backup backupunder(const Text& name, const char* path) {
  const Standing standing = standingunder(AT_FDCWD, name.c_str());
  const bool link = standingunder(AT_FDCWD, path) == Standing::link;
  return {std::string(name), replaces(standing), link, backupobstacle(name, standing)};
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
