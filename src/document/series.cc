#include "document/series.h"

#include "document/entries.h"
#include "document/fields.h"

namespace tolvane {

Line* numbered(const Line* header, std::string_view prefix, int n) { return findbelow(header, Text(prefix, n)); }

int countseries(std::string_view section, std::string_view prefix) {
  const Line* const header = find(section);
  int count = 0;
  while (numbered(header, prefix, count + 1) != nullptr) ++count;
  return count;
}

Place locate(std::string_view section, std::string_view prefix, std::string_view name) {
  const Line* const header = find(section);
  Place place{1, nullptr};
  for (; (place.line = numbered(header, prefix, place.number)) != nullptr; ++place.number) {
    if (getfield(valueof(*place.line), 1, ',') == name) break;
  }
  return place;
}

void savenumbered(std::string_view section, std::string_view prefix, int n, std::string_view value) {
  saveentry(section, Text(prefix, n), value);
}

}  // namespace tolvane
