#include "document/linestore.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace tolvane {

Line* start = nullptr;
Line* last = nullptr;

namespace {

/// Makes two lines neighbours. None stands for an end of the store.
void link(Line* before, Line* after) {
  if (before == nullptr) {
    start = after;
  } else {
    before->next = after;
  }
  if (after == nullptr) {
    last = before;
  } else {
    after->previous = before;
  }
}

}  // namespace

Line* makeentry() {
  void* const memory = std::malloc(sizeof(Line));
  if (memory == nullptr) throw std::bad_alloc{};
  return new (memory) Line;
}

Line* dlstore(Line* line) {
  Line* const tail = last;
  link(tail, line);
  link(line, nullptr);
  return tail;
}

void insertafter(Line* place, Line* line) {
  link(line, place->next);
  link(place, line);
}

void discard(Line* line) {
  link(line->previous, line->next);
  std::free(line);
}

Aside::Aside() : first_(std::exchange(start, nullptr)), last_(std::exchange(last, nullptr)) {}

Aside::Aside(Aside&& other) noexcept : first_(std::exchange(other.first_, nullptr)), last_(other.last_) {}

Aside::~Aside() {
  while (first_ != nullptr) std::free(std::exchange(first_, first_->next));
}

void Aside::putback() {
  if (first_ == nullptr) return;
  link(last_, start);
  link(nullptr, std::exchange(first_, nullptr));
}

}  // namespace tolvane
