#include "ladder/droppedglobals.h"

#include <iterator>
#include <list>
#include <map>

#include "document/entries.h"
#include "document/fields.h"
#include "document/series.h"
#include "ladder/mappings.h"

namespace tolvane {

namespace {

/// A mapping section.
struct Section {
  Line* header;
  bool follows;  // another mapping section, with none between them
  Mappings mappings;
};

/// In the order of the file, and by their headers.
struct Sections {
  std::list<Section> all;
  std::map<const Line*, std::list<Section>::iterator> byheader;
};

/// All mapping sections. They are read once, however many namespaces name them: to walk one of 40,000 lines for each of
/// 5,000 namespaces took 67 s.
Sections mappingsections() {
  Sections sections;
  Section* section = nullptr;
  std::uint32_t place = 0;
  for (Line* line = start; line != nullptr; line = line->next()) {
    if (!line->header()) {
      if (section != nullptr) addline(section->mappings, *line, ++place);
    } else if (!line->text().view().starts_with("[NspMap.")) {
      section = nullptr;
    } else {
      section = &sections.all.emplace_back(Section{line, section != nullptr, {}});
      sections.byheader.emplace(line, std::prev(sections.all.end()));
    }
  }
  return sections;
}

/// Deletes the header of a section, whose lines join the section before.
void deleteheader(Sections& sections, std::list<Section>::iterator section) {
  if (const auto next = std::next(section); next != sections.all.end()) next->follows &= section->follows;
  if (section->follows) {
    join(std::prev(section)->mappings, std::move(section->mappings));
  } else {
    renumber(section->mappings);
  }
  sections.byheader.erase(section->header);
  discard(section->header);
  sections.all.erase(section);
}

void cleannamespace(std::string_view name, Sections& sections) {
  const auto found = sections.byheader.find(find(Text("[NspMap.", name, ']')));
  if (found == sections.byheader.end() || found->second->mappings.firsts.empty()) return;
  dropmappings(found->second->mappings);
  const Line* const first = below(found->second->header);
  // Kept: a line with an empty key right below the header counts as no entry, also when nothing was dropped.
  if (first == nullptr || keyof(*first).empty()) deleteheader(sections, found->second);
}

/// The list of the namespaces, which grows when a mapping section behind it joins it.
struct Namespaces {
  Line* end;                      // its last line so far
  std::map<int, Line*> numbered;  // the first line of each number
};

void readon(Namespaces& namespaces) {
  while (Line* const line = nextinsection(namespaces.end)) {
    namespaces.numbered.try_emplace(numberof(*line, "Nsp_"), line);
    namespaces.end = line;
  }
}

}  // namespace

void dropglobals() {
  Namespaces namespaces{find("[Namespaces]"), {}};
  if (namespaces.end == nullptr) return;
  readon(namespaces);
  Sections sections = mappingsections();
  for (int n = 1; namespaces.numbered.contains(n); ++n) {
    cleannamespace(getfield(valueof(*namespaces.numbered[n]), 1, ','), sections);
    readon(namespaces);
  }
  for (const Section& section : sections.all) renumber(section.mappings);
}

}  // namespace tolvane
