// The two lists of distinct pairs of texts, which a conversion counts. They only grow while it runs.
#pragma once

#include <string_view>

namespace tolvane {

/// A node of a list; its text is an allocated copy of "first,second".
struct Pair {
  char* text;
  Pair* next;
};

/// The lists. Only `addpair` and `forgetpairs` change them.
extern Pair* pairs[2];

/// Adds "first,second" to pair list 0 or 1 (any other number counts as 1) unless it is in it already. 1 when it was
/// added, else 0. The text has at most 1025 characters, or TextTooLong is thrown.
int addpair(std::string_view first, std::string_view second, int list);

/// Empties both lists and frees their pairs.
void forgetpairs();

}  // namespace tolvane
