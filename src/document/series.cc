#include "document/series.h"

#include <cstdint>
#include <limits>
#include <map>

#include "document/entries.h"
#include "document/fields.h"

namespace tolvane {

namespace {

bool isdecimal(char character) { return '0' <= character && character <= '9'; }

}  // namespace

int numberof(const Line& line, std::string_view prefix) {
  const char* next = line.text().c_str();
  for (const char character : prefix) {
    if (*next++ != character || character == '=') return 0;
  }
  if (*next < '1') return 0;  // a number with a sign or a leading 0 is another key
  std::int64_t number = 0;
  for (; isdecimal(*next); ++next) {
    number = 10 * number + (*next - '0');
    if (number > std::numeric_limits<int>::max()) return 0;
  }
  return *next == '=' || *next == '\0' ? static_cast<int>(number) : 0;
}

std::vector<Line*> series(const Line* header, std::string_view prefix) {
  std::vector<Line*> entries;
  std::map<std::size_t, Line*> ahead;  // behind the first number that has not been met yet
  for (Line* line = below(header); line != nullptr; line = nextinsection(line)) {
    const auto number = static_cast<std::size_t>(numberof(*line, prefix));
    if (number > entries.size() + 1) ahead.try_emplace(number, line);
    if (number != entries.size() + 1) continue;
    entries.push_back(line);
    for (auto next = ahead.begin(); next != ahead.end() && next->first == entries.size() + 1;) {
      entries.push_back(next->second);
      next = ahead.erase(next);
    }
  }
  return entries;
}

int countseries(std::string_view section, std::string_view prefix) {
  return static_cast<int>(series(find(section), prefix).size());
}

Place locate(const std::vector<Line*>& entries, std::string_view name) {
  Place place{1, nullptr};
  for (Line* const line : entries) {
    if (firstfield(valueof(*line), ',') == name) return {place.number, line};
    ++place.number;
  }
  return place;
}

Place locate(std::string_view section, std::string_view prefix, std::string_view name) {
  return locate(series(find(section), prefix), name);
}

void savenumbered(std::string_view section, std::string_view prefix, int n, std::string_view value) {
  saveentry(section, Text(prefix, n), value);
}

}  // namespace tolvane
