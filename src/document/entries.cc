#include "document/entries.h"

#include <cstring>
#include <map>
#include <set>

#include "document/fields.h"

namespace tolvane {

namespace {

/// Whether a line has that key. Its first character tells nearly every line apart: to measure all keys took twice the
/// instructions for a file of 300 lines. No line has a key that holds a "=".
bool haskey(const Line& line, std::string_view key) {
  const char* next = line.text().c_str();
  for (const char character : key) {
    if (*next++ != character || character == '=') return false;
  }
  return *next == '=' || *next == '\0';
}

/// The last line of a section; where it has no header it is created.
Line* endof(Line* header, std::string_view section) {
  return header == nullptr ? newsection(section) : lastinsection(header);
}

void addbelow(Line* header, std::string_view section, std::string_view key, std::string_view value) {
  Line* end = endof(header, section);
  appendentry(end, section, key, value);
}

}  // namespace

std::string_view keyof(const Line& line) {
  const char* const text = line.text().c_str();
  return {text, std::strcspn(text, "=")};
}

std::string_view valueof(const Line& line) {
  const char* const equals = std::strchr(line.text().c_str(), '=');
  return equals == nullptr ? std::string_view{} : equals + 1;
}

void rewrite(Line& line, std::string_view key, std::string_view value) { settext(line, Text{key, '=', value}); }

Line* nextinsection(const Line* line) {
  Line* const next = line->next();
  return next == nullptr || next->header() ? nullptr : next;
}

Line* below(const Line* header) { return header == nullptr ? nullptr : nextinsection(header); }

Line* lastinsection(Line* header) {
  Line* line = header;
  while (Line* const next = nextinsection(line)) line = next;
  return line;
}

Line* find(std::string_view section) {
  if (section.starts_with('[')) {
    const auto header = sectiondirectory.lower_bound(section);
    return header == sectiondirectory.end() || header->first != section ? nullptr : header->second;
  }
  Line* line = start;  // kept: whatever line equals the text counts as a header
  while (line != nullptr && line->text() != section) line = line->next();
  return line;
}

Line* findbelow(const Line* header, std::string_view key) {
  Line* line = below(header);
  while (line != nullptr && !haskey(*line, key)) line = nextinsection(line);
  return line;
}

Line* find(std::string_view section, std::string_view key) { return findbelow(find(section), key); }

bool getvalue(std::string_view section, std::string_view key, Text& value) {
  const Line* const line = find(section, key);
  value.set(line == nullptr ? std::string_view{} : valueof(*line));
  return line != nullptr;
}

Text getvalue(std::string_view section, std::string_view key) {
  Text value;
  getvalue(section, key, value);
  return value;
}

void putentry(std::string_view section, std::string_view key, std::string_view value) {
  Line* const header = find(section);
  if (Line* const line = findbelow(header, key)) {
    rewrite(*line, key, value);
  } else {
    addbelow(header, section, key, value);
  }
}

void editentry(std::string_view section, std::string_view key, std::string_view value) {
  if (Line* const line = find(section, key)) rewrite(*line, key, value);
}

void keepentry(std::string_view section, std::string_view key, std::string_view value) {
  Line* const header = find(section);
  if (findbelow(header, key) == nullptr) addbelow(header, section, key, value);
}

void delentry(std::string_view section) {
  if (Line* const line = find(section)) discard(line);
}

void delentry(std::string_view section, std::string_view key) {
  if (Line* const line = find(section, key)) discard(line);
}

void saveentry(std::string_view section, std::string_view key, std::string_view value) {
  addbelow(find(section), section, key, value);
}

void appendentry(Line*& end, std::string_view section, std::string_view key, std::string_view value) {
  if (end == nullptr) end = endof(find(section), section);
  const Text entry{key, '=', value};  // before the line: one that is too long leaves none behind
  Line* const line = makeentry(entry);
  insertafter(end, line);
  end = line;
}

Line* newsection(std::string_view header) {
  const Text text{header};
  Line* const line = makeentry(text);
  dlstore(line);
  return line;
}

const Text* editsection(std::string_view oldheader, std::string_view newheader) {
  Line* const line = find(oldheader);
  if (line == nullptr) return nullptr;
  settext(*line, Text{newheader});
  return &line->text();
}

void delsection(std::string_view section) {
  Line* const header = find(section);
  if (header == nullptr) return;
  while (Line* const line = nextinsection(header)) {
    if (keyof(*line).empty()) break;  // kept: the section ends here, what follows joins the one before
    discard(line);
  }
  discard(header);
}

char gettagname(std::string_view line, Text& key) { return getfield(line, 1, '=', key); }

void getnexttagname(std::string_view section, Text& key) {
  const Line* const line = below(find(section));
  key.set(line == nullptr ? std::string_view{} : keyof(*line));
}

void renametag(std::string_view section, std::string_view key, std::string_view newkey) {
  if (Line* const line = find(section, key)) rewrite(*line, newkey, valueof(*line));
}

void changeinsection(std::string_view section, int n, char separator, std::string_view text) {
  // The first entry of each key, so that a section of 10,000 need not be searched once for each.
  std::map<std::string_view, Line*> entries;
  for (Line* line = below(find(section)); line != nullptr; line = nextinsection(line)) {
    // Kept: also for a duplicate it is the first entry of its key that is read and written.
    Line& first = *entries.try_emplace(keyof(*line), line).first->second;
    rewrite(first, keyof(first), replacefield(valueof(first), n, separator, text));
  }
}

void replaceinsection(std::string_view section, std::string_view oldtext, std::string_view newtext) {
  if (newtext.find(oldtext) != std::string_view::npos) return;
  std::set<std::string_view> keys;
  for (Line* line = below(find(section)); line != nullptr; line = nextinsection(line)) {
    // Kept: for a duplicate the value of the first entry of its key is searched, and there nothing is left to replace.
    if (!keys.insert(keyof(*line)).second) continue;
    Text value{valueof(*line)};
    while (value.view().find(oldtext) != std::string_view::npos) {
      swapchars(value, oldtext, newtext, value);
      rewrite(*line, keyof(*line), value);
    }
  }
}

void swapchars(std::string_view source, std::string_view oldtext, std::string_view newtext, Text& output) {
  const std::size_t position = source.find(oldtext);
  if (position == std::string_view::npos) {
    output.set(source);
  } else {
    output.set(source.substr(0, position), newtext, source.substr(position + oldtext.size()));
  }
}

}  // namespace tolvane
