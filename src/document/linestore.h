// The line store: the whole configuration parameter file in memory, one node a line.
//
// There is one store per process, held in `start` and `last`; both are none (null) or both set. Nodes are allocated
// with malloc, never shared, and freed by the operation that unlinks them; what is left at the end of the process is
// left to its exit. Memory that cannot be had is a std::bad_alloc.
//
// In the comments of all sources, "kept:" marks behaviour that looks wrong and stays: files in the field depend on it.
#pragma once

#include "document/text.h"

namespace tolvane {

/// One line of the file, without its newline.
struct Line {
  Line* next;
  Line* previous;
  Text text;
};

static_assert(sizeof(Line) == 528);

extern Line* start;
extern Line* last;

/// A new line that is not linked yet; its contents are undefined.
Line* makeentry();

/// Appends a line at the tail of the store and returns the previous tail, none if the store was empty.
Line* dlstore(Line* line);

/// Links a line into the store behind another one.
void insertafter(Line* place, Line* line);

/// Takes a line out of the store and frees it.
void discard(Line* line);

/// All lines of the store, taken out of it for a while. Frees those that are never put back.
class Aside {
 public:
  Aside();
  Aside(Aside&& other) noexcept;
  Aside& operator=(Aside&& other) = delete;
  Aside(const Aside&) = delete;
  Aside& operator=(const Aside&) = delete;
  ~Aside();

  /// Links the lines before those that are in the store by now.
  void putback();

  /// The first of the lines, none when there are none.
  [[nodiscard]] const Line* first() const { return first_; }

 private:
  Line* first_;
  Line* last_;
};

}  // namespace tolvane
