#include "document/files.h"

#include "document/overwrite.h"
#include "document/parse.h"
#include "document/replace.h"
#include "document/room.h"

namespace tolvane {

void load(Original& original) {
  const std::string bytes = original.bytes();
  takeroom(bytes);
  parse(bytes);
}

void save(const Original& original) { overwrite(original, contents()); }
void output(Original& original) { replace(original, contents()); }
void backup(Original& original, std::string_view suffix) { replacekeeping(original, suffix, contents()); }

}  // namespace tolvane
