#include "document/edits.h"

#include "document/entries.h"
#include "document/numbers.h"

namespace tolvane {

void each(Verb verb, std::string_view section, std::span<const Edit> edits) {
  for (const Edit& edit : edits) verb(section, edit.key, edit.value);
}

void saveall(std::string_view section, std::span<const Edit> edits) {
  Line* end = nullptr;
  for (const Edit& edit : edits) appendentry(end, section, edit.key, edit.value);
}

bool takeentry(std::string_view section, std::string_view key, Text& value) {
  Line* const line = find(section, key);
  value.set(line == nullptr ? std::string_view{} : valueof(*line));
  if (line != nullptr) discard(line);
  return line != nullptr;
}

Text takeentry(std::string_view section, std::string_view key, std::string_view fallback) {
  Text value;
  return takeentry(section, key, value) ? value : Text(fallback);
}

void moveentry(std::string_view section, std::string_view key, std::string_view newsection, std::string_view newkey) {
  if (Text value; takeentry(section, key, value)) saveentry(newsection, newkey, value);
}

int numberin(std::string_view section, std::string_view key) { return number(getvalue(section, key)); }

void minvalue(std::string_view section, std::string_view key, std::string_view minimum) {
  Line* const line = find(section, key);
  if (line == nullptr) {
    saveentry(section, key, minimum);
  } else if (number(Text(minimum)) > number(Text(valueof(*line)))) {
    rewrite(*line, key, minimum);
  }
}

}  // namespace tolvane
