#include "document/linestore.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace tolvane {

/// All that changes links, texts and the directory of sections.
class Store {
 public:
  static void link(Line* before, Line* after);
  static void settext(Line& line, const Text& text);
  static void enter(Line* line);
  static void leave(const Line* line);

  static inline Line* start = nullptr;
  static inline Line* last = nullptr;
  static inline Directory sectiondirectory;
};

Line* const& start = Store::start;
Line* const& last = Store::last;
const Directory& sectiondirectory = Store::sectiondirectory;

/// Makes two lines neighbours. None stands for an end of the store.
void Store::link(Line* before, Line* after) {
  if (before == nullptr) {
    start = after;
  } else {
    before->next_ = after;
  }
  if (after == nullptr) {
    last = before;
  } else {
    after->previous_ = before;
  }
}

/// Enters a linked line, if it is a header, before those of its text that stand behind it.
void Store::enter(Line* line) {
  if (!line->header()) return;
  const auto [first, end] = sectiondirectory.equal_range(line->text());
  const Line* behind = first == end ? nullptr : line->next();
  while (behind != nullptr && behind->text() != line->text()) behind = behind->next();
  auto place = end;
  if (behind != nullptr) place = std::find_if(first, end, [=](const auto& entry) { return entry.second == behind; });
  sectiondirectory.emplace_hint(place, line->text(), line);
}

void Store::leave(const Line* line) {
  if (!line->header()) return;
  const auto [first, end] = sectiondirectory.equal_range(line->text());
  const auto place = std::find_if(first, end, [line](const auto& entry) { return entry.second == line; });
  if (place != end) sectiondirectory.erase(place);
}

void Store::settext(Line& line, const Text& text) {
  const bool linked = line.previous_ != nullptr || start == &line;
  if (linked) leave(&line);
  line.text_ = text;
  if (linked) enter(&line);
}

Line* makeentry(std::string_view text) {
  void* const memory = std::malloc(sizeof(Line));
  if (memory == nullptr) throw std::bad_alloc{};
  return new (memory) Line{text};
}

void settext(Line& line, const Text& text) { Store::settext(line, text); }

Line* dlstore(Line* line) {
  Line* const tail = last;
  Store::link(tail, line);
  Store::link(line, nullptr);
  Store::enter(line);
  return tail;
}

void insertafter(Line* place, Line* line) {
  Store::link(line, place->next());
  Store::link(place, line);
  Store::enter(line);
}

void discard(Line* line) {
  Store::leave(line);
  Store::link(line->previous(), line->next());
  std::free(line);
}

void emptystore() {
  Store::start = Store::last = nullptr;
  Store::sectiondirectory.clear();
}

Aside::Aside()
    : first_(std::exchange(Store::start, nullptr)),
      last_(std::exchange(Store::last, nullptr)),
      directory_(std::exchange(Store::sectiondirectory, {})) {}

Aside::Aside(Aside&& other) noexcept
    : first_(std::exchange(other.first_, nullptr)), last_(other.last_), directory_(std::move(other.directory_)) {}

Aside::~Aside() {
  while (first_ != nullptr) std::free(std::exchange(first_, first_->next()));
}

void Aside::putback() {
  if (first_ == nullptr) return;
  Store::link(last_, start);
  Store::link(nullptr, std::exchange(first_, nullptr));
  directory_.merge(Store::sectiondirectory);
  Store::sectiondirectory = std::exchange(directory_, {});
}

}  // namespace tolvane
