#include "commands/setparameter.h"

#include "document/entries.h"

namespace tolvane {

int setparameter(const char* path, const char* section, const char* key, const char* value) {
  load(path);
  if (getvalue(section, key) == value) return 1;
  putentry(section, key, value);
  save(path);
  return 1;
}

}  // namespace tolvane
