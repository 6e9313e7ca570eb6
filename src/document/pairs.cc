#include "document/pairs.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <new>
#include <set>

#include "document/ends.h"

namespace tolvane {

Pair* pairs[2] = {nullptr, nullptr};

namespace {

/// The texts of a list and its last node, so that a pair need not be compared with all before it.
struct Known {
  std::set<std::string_view> texts;
  Pair* tail = nullptr;
};

Known known[2];

/// A new pair that is not linked yet.
Pair* makepair(const char* text) {
  char* const copy = strdup(text);
  void* const node = std::malloc(sizeof(Pair));
  if (copy == nullptr || node == nullptr) throw std::bad_alloc{};  // frees nothing: the run ends
  return new (node) Pair{copy, nullptr};
}

}  // namespace

int addpair(std::string_view first, std::string_view second, int list) {
  std::array<char, 1026> text;
  if (first.size() + 1 + second.size() >= text.size()) throw TextTooLong{};
  char* const comma = std::copy(first.begin(), first.end(), text.begin());
  *comma = ',';
  *std::copy(second.begin(), second.end(), comma + 1) = '\0';

  const int index = list == 0 ? 0 : 1;
  auto& [texts, tail] = known[index];
  if (texts.contains(text.data())) return 0;
  Pair* const pair = makepair(text.data());
  if (tail == nullptr) {
    pairs[index] = pair;
  } else {
    tail->next = pair;
  }
  tail = pair;
  texts.insert(pair->text);
  return 1;
}

void forgetpairs() {
  for (int index = 0; index < 2; ++index) {
    known[index] = {};
    while (Pair* const pair = pairs[index]) {
      pairs[index] = pair->next;
      std::free(pair->text);
      std::free(pair);
    }
  }
}

}  // namespace tolvane
