#include "fuzz/properties.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "document/ends.h"
#include "document/forget.h"
#include "document/linestore.h"
#include "document/observer.h"
#include "document/parse.h"
#include "fuzz/work.h"

namespace tolvane::fuzz {

namespace {

bool blank(const std::string& line) { return line.find_first_not_of(" \t") == std::string::npos; }

}  // namespace

void claim(bool holds, const std::string& claim) {
  if (!holds) throw std::logic_error(claim);
}

Lines linesof(std::string_view contents) {
  Lines lines;
  while (!contents.empty()) {
    const std::size_t end = std::min({contents.find('\n'), contents.size(), std::size_t{511}});
    std::string line{contents.substr(0, end)};
    line.resize(std::min(line.find('\0'), line.size()));
    if (!blank(line)) lines.push_back(line);
    contents.remove_prefix(end);
    if (end < 511 && !contents.empty()) contents.remove_prefix(1);
  }
  return lines;
}

Lines storedlines() {
  Lines lines;
  const Line* previous = nullptr;
  for (const Line* line = start; line != nullptr; line = line->next()) {
    claim(line->previous() == previous, "each line knows the one before it");
    claim(line->text().length() <= Text::maximum, "no line is longer than 511 characters");
    lines.emplace_back(line->text().view());
    previous = line;
  }
  claim(last == previous, "the last line is the last one");
  return lines;
}

std::string contentsof(const Lines& lines) {
  std::string contents;
  for (const std::string& line : lines) {
    if (line.starts_with('[') && &line != lines.data()) contents += '\n';
    contents += line + '\n';
  }
  return contents;
}

bool ends(const std::function<void()>& work, std::uint64_t allowed) {
  const Observer silent{[](auto...) {}, [](std::string_view) {}};
  const Observing here{silent};
  forget();
  const std::uint64_t before = workdone();
  bool whole = false;
  try {
    work();
    whole = true;
  } catch (const Fatal&) {
  } catch (const TextTooLong&) {
  }
  const std::uint64_t done = workdone() - before;
  claim(done <= allowed, std::to_string(done) + " blocks are too many");
  return whole;
}

Lines claimreadable() {
  const Lines lines = storedlines();
  claim(contents() == contentsof(lines), "what is written is the store");
  claim(linesof(contents()) == lines, "what is written can be read");
  return lines;
}

void claimkept(const Lines& before, const Lines& after, bool (*kept)(const std::string& line)) {
  Lines expected;
  Lines found;
  std::copy_if(before.begin(), before.end(), std::back_inserter(expected), kept);
  std::copy_if(after.begin(), after.end(), std::back_inserter(found), kept);
  claim(expected == found, "lines that no step knows come out as they went in");
}

}  // namespace tolvane::fuzz
