#include "commands/commands.h"
#include "document/ends.h"
#include "document/entries.h"
#include "document/files.h"

namespace tolvane {

int setparameter(const char* path, const char* section, const char* key, const char* value) {
  Lock lock{path};
  Original original = Original::opened(lock, path);
  load(original);
  if (getvalue(section, key) == value) return ran;  // kept: an empty value creates no entry
  putentry(section, key, value);
  save(original);  // kept: straight over the file, without a temporary one
  return ran;
}

}  // namespace tolvane
