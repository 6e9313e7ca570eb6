// The directory of sections says after every operation what a walk through all lines finds.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "document/edits.h"
#include "document/entries.h"
#include "document/parse.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

/// Few texts, so that headers meet others of their text. "[k=v" is what a key that begins with "[" makes.
constexpr std::string_view sometexts[] = {"[A]", "[B]", "[A", "[", "[k=v", "k=v", "=v", "k", "l=1"};
constexpr std::string_view somesections[] = {"[A]", "[B]", "[A", "[", "[k=v", "k=v", "missing", ""};
constexpr std::string_view somekeys[] = {"k", "l", "", "[k", "[A", "missing"};

class Directories : public StoreTest {
 protected:
  std::size_t below(std::size_t limit) { return random() % limit; }
  std::string_view text() { return sometexts[below(std::size(sometexts))]; }
  std::string_view section() { return somesections[below(std::size(somesections))]; }
  std::string_view key() { return somekeys[below(std::size(somekeys))]; }

  /// Any line of the store, none when it is empty.
  Line* anyline() {
    std::vector<Line*> all;
    for (Line* line = start; line != nullptr; line = line->next()) all.push_back(line);
    return all.empty() ? nullptr : all[below(all.size())];
  }

  std::string file() {
    std::string bytes;
    for (std::size_t count = below(8); count > 0; --count) bytes.append(text()).append("\n");
    return bytes;
  }

  void changeline() {
    Line* const line = anyline();
    if (line == nullptr) return;
    switch (below(4)) {
      case 0:
        discard(line);
        break;
      case 1:
        settext(*line, Text{text()});
        break;
      case 2:
        rewrite(*line, key(), "v");
        break;
      default:
        insertafter(line, makeentry(text()));
    }
  }

  void changesection() {
    switch (below(6)) {
      case 0:
        newsection(section());
        break;
      case 1:
        editsection(section(), section());
        break;
      case 2:
        delsection(section());
        break;
      case 3:
        delentry(section());
        break;
      case 4:
        changeinsection(section(), 1, ',', text());
        break;
      default:
        replaceinsection(section(), "v", "[");
    }
  }

  void changeentry() {
    switch (below(6)) {
      case 0:
        saveentry(section(), key(), "v");
        break;
      case 1:
        putentry(section(), key(), "v");
        break;
      case 2:
        renametag(section(), key(), key());
        break;
      case 3:
        delentry(section(), key());
        break;
      case 4:
        moveentry(section(), key(), section(), key());
        break;
      default:
        dlstore(makeentry(text()));
    }
  }

  void join() {
    Aside aside;
    parse(file());
    changesection();
    if (below(4) != 0) aside.putback();
  }

  std::mt19937 random{1};  // the same operations in every run
};

/// What the directory holds: headers by their text, those of one text in the order of the store.
std::vector<std::pair<std::string_view, Line*>> headers() {
  std::vector<std::pair<std::string_view, Line*>> found;
  for (Line* line = start; line != nullptr; line = line->next()) {
    if (line->text().view().starts_with('[')) found.emplace_back(line->text(), line);
  }
  std::stable_sort(found.begin(), found.end(), [](const auto& one, const auto& other) {
    return sectiondirectory.key_comp()(one.first, other.first);
  });
  return found;
}

const Line* walkedto(std::string_view text) {
  const Line* line = start;
  while (line != nullptr && line->text().view() != text) line = line->next();
  return line;
}

TEST_F(Directories, HoldAfterEveryOperationWhatAWalkFinds) {
  for (int operation = 0; operation < 40000; ++operation) {
    switch (below(16)) {
      case 0:
        given(file());
        break;
      case 1:
        join();
        break;
      case 2:
      case 3:
      case 4:
      case 5:
        changesection();
        break;
      case 6:
      case 7:
      case 8:
      case 9:
        changeentry();
        break;
      default:
        changeline();
    }
    const auto walked = headers();
    ASSERT_TRUE(std::equal(walked.begin(), walked.end(), sectiondirectory.begin(), sectiondirectory.end(),
                           [](const auto& one, const auto& other) {
                             return one.second == other.second && one.first.data() == other.first.data() &&
                                    one.first == other.first;
                           }))
        << lines() << "after operation " << operation;
    for (const std::string_view text : somesections) {
      ASSERT_EQ(find(text), walkedto(text)) << lines() << "after operation " << operation;
    }
  }
}

}  // namespace

}  // namespace tolvane::test
