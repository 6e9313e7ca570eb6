#include "document/pairs.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <unordered_set>

#include "document/ends.h"

namespace tolvane {

Pair* pairs[2] = {nullptr, nullptr};

namespace {

/// What a list holds and where it ends, so that a pair need not be compared with all before it.
struct Known {
  std::unordered_set<std::string_view> texts;
  Pair** end;
};

Known& knownin(Pair*& list) {
  static Known known[2];
  Known& found = known[&list - pairs];
  if (list == nullptr) found = {{}, &list};
  return found;
}

}  // namespace

int addpair(std::string_view first, std::string_view second, int list) {
  std::array<char, 1026> text;
  if (first.size() + 1 + second.size() >= text.size()) throw TextTooLong{};
  char* const comma = std::copy(first.begin(), first.end(), text.begin());
  *comma = ',';
  *std::copy(second.begin(), second.end(), comma + 1) = '\0';

  Known& known = knownin(pairs[list == 0 ? 0 : 1]);
  if (known.texts.contains(text.data())) return 0;
  char* const copy = strdup(text.data());
  void* const node = std::malloc(sizeof(Pair));
  if (copy == nullptr || node == nullptr) {
    std::free(copy);
    std::free(node);
    throw std::bad_alloc{};
  }
  Pair* const pair = new (node) Pair{copy, nullptr};
  *known.end = pair;
  known.end = &pair->next;
  known.texts.insert(copy);
  return 1;
}

}  // namespace tolvane
