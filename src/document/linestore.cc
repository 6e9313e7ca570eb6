#include "document/linestore.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

#include "document/overwrite.h"
#include "document/replace.h"
#include "document/watch.h"

namespace tolvane {

Line* start = nullptr;
Line* last = nullptr;

namespace {

struct Close {
  void operator()(std::FILE* file) const { (void)std::fclose(file); }
};

/// Reads the next line that is not blank.
bool readkept(Text& text, std::FILE* file) {
  while (text.read(file)) {
    if (!blankline(text)) return true;
  }
  return false;
}

/// Fills the store from a stream and closes it; null is a stream that could not be opened.
void read(std::FILE* stream, const char* path) {
  const std::unique_ptr<std::FILE, Close> file{stream};
  if (file == nullptr && errno == ENOMEM) throw std::bad_alloc{};
  if (file == nullptr) throw unreadable(path);
  start = last = nullptr;
  Line* line = makeentry();
  while (readkept(line->text, file.get())) {
    dlstore(line);
    line = makeentry();
  }
  std::free(line);
  // Half a file must not be taken for the whole one.
  if (std::ferror(file.get()) != 0 && errno != EISDIR) throw unreadable(path);
  watch.loaded();
}

/// Whether an empty line stands before this one in the file.
bool separated(const Line& line) { return line.text.first() == '[' && &line != start; }

}  // namespace

std::string contents() {
  std::size_t size = 0;
  for (const Line* line = start; line != nullptr; line = line->next) size += line->text.length() + 2;
  std::string text;
  text.reserve(size);
  for (const Line* line = start; line != nullptr; line = line->next) {
    if (separated(*line)) text += '\n';
    text.append(line->text).append(1, '\n');
  }
  return text;
}

bool blankline(std::string_view text) { return text.find_first_not_of(" \t") == std::string_view::npos; }

Line* makeentry() {
  void* const memory = std::malloc(sizeof(Line));
  if (memory == nullptr) throw std::bad_alloc{};
  return new (memory) Line;
}

Line* dlstore(Line* line) {
  Line* const tail = last;
  line->next = nullptr;
  line->previous = tail;
  (tail == nullptr ? start : tail->next) = line;
  last = line;
  return tail;
}

void insertafter(Line* place, Line* line) {
  line->previous = place;
  line->next = place->next;
  (line->next == nullptr ? last : line->next->previous) = line;
  place->next = line;
}

void discard(Line* line) {
  (line->previous == nullptr ? start : line->previous->next) = line->next;
  (line->next == nullptr ? last : line->next->previous) = line->previous;
  std::free(line);
}

void load(const char* path) { read(watch.open(path), path); }
void load(Original& original) { read(original.stream(), original.path()); }
void save(const Original& original) { overwrite(original, contents()); }
void output(Original& original) { replace(original, contents()); }
void backup(Original& original, std::string_view suffix) { replacekeeping(original, suffix, contents()); }

}  // namespace tolvane
