#include "document/files.h"

#include "document/overwrite.h"
#include "document/parse.h"
#include "document/replace.h"
#include "document/room.h"

namespace tolvane {

namespace {

/// Bytes that the steps add to an ordinary file.
constexpr std::size_t growth = 16384;

std::string result(const Original& original) { return contents(original.size() + growth); }

}  // namespace

void load(Original& original) {
  const std::string bytes = original.bytes();
  takeroom(bytes);
  parse(bytes);
}

void save(const Original& original) { overwrite(original, result(original)); }
void output(Original& original) { replace(original, result(original)); }
void backup(Original& original, std::string_view suffix) { replacekeeping(original, suffix, result(original)); }

}  // namespace tolvane
