// The line store: the whole configuration parameter file in memory, one node a line, and the directory of its sections.
//
// There is one store per process, held in `start` and `last`; both are none (null) or both set. Nodes are allocated
// with malloc, never shared, and freed by the operation that unlinks them; what is left at the end of the process is
// left to its exit. Memory that cannot be had is a std::bad_alloc.
//
// Links and texts change by the operations below and by nothing else, so that the directory knows at any time which
// lines are headers: those that begin with "[".
//
// In the comments of all sources, "kept:" marks behaviour that looks wrong and stays: files in the field depend on it.
#pragma once

#include <map>
#include <string_view>

#include "document/text.h"

namespace tolvane {

class Line;

/// A new line that is not linked yet. Its text has at most 511 characters.
Line* makeentry(std::string_view text = {});

/// One line of the file, without its newline. Its neighbours are none at the ends of the store.
class Line {
 public:
  [[nodiscard]] Line* next() const { return next_; }
  [[nodiscard]] Line* previous() const { return previous_; }
  [[nodiscard]] const Text& text() const { return text_; }
  [[nodiscard]] bool header() const { return text_.first() == '['; }

 private:
  friend class Store;
  friend Line* makeentry(std::string_view text);

  explicit Line(std::string_view text) : text_(text) {}

  Line* next_ = nullptr;
  Line* previous_ = nullptr;
  Text text_;
};

static_assert(sizeof(Line) == 528);

/// By length first, which tells most texts apart sooner than their characters.
struct Shorter {
  bool operator()(std::string_view text, std::string_view other) const {
    return text.size() != other.size() ? text.size() < other.size() : text < other;
  }
};

/// Headers by their text; those of one text in the order of the store.
using Directory = std::multimap<std::string_view, Line*, Shorter>;

extern Line* const& start;
extern Line* const& last;
extern const Directory& sectiondirectory;

/// Gives a line another text.
void settext(Line& line, const Text& text);

/// Appends a line at the tail of the store and returns the previous tail, none if the store was empty.
Line* dlstore(Line* line);

/// Links a line into the store behind another one.
void insertafter(Line* place, Line* line);

/// Takes a line out of the store and frees it.
void discard(Line* line);

/// Empties the store without freeing its lines.
void emptystore();

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
  Directory directory_;
};

}  // namespace tolvane
