#include "commands/commands.h"
#include "commands/convert.h"
#include "document/ends.h"
#include "document/files.h"

namespace tolvane {

int update(const char* path) {
  Lock lock{path};
  Original original = Original::opened(lock, path);
  load(original);
  if (const std::optional<Text> suffix = convert()) backup(original, *suffix);
  return ran;
}

}  // namespace tolvane
