// What a watch sees of the store is what stands there, whatever is done to the lines between two looks.
#include "preview/snapshot.h"

#include <deque>
#include <random>

#include "document/forget.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class WatchedStore : public StoreTest {
 protected:
  /// Every line with the header of its section, as the numbers say.
  [[nodiscard]] std::vector<std::string> described(const Snapshot& lines) const {
    std::vector<std::string> result;
    for (const std::uint32_t line : lines) {
      result.push_back(std::string(words.text(words.section(line))) + ' ' + std::string(words.text(line)));
    }
    return result;
  }

  /// The same, as the store says.
  static std::vector<std::string> standing() {
    std::vector<std::string> result;
    std::string section;
    for (const Line* line = start; line != nullptr; line = line->next()) {
      if (line->header()) section = line->text().view();
      result.push_back(section + ' ' + std::string(line->text()));
    }
    return result;
  }

  /// Fills the store and the watch.
  void read(const std::string& contents) {
    forget();
    const std::string& bytes = files.emplace_back(contents);
    parse(bytes);
    watch.set(parsedlines(bytes, words));
    EXPECT_EQ(described(watch.lines()), standing());
  }

  /// Looks again, and returns whether anything differs.
  bool look() {
    const Snapshot before = watch.lines();
    const std::optional<Snapshot> earlier = watch.look(nullptr, words);
    EXPECT_EQ(described(watch.lines()), standing());
    EXPECT_EQ(earlier.value_or(before), before);
    EXPECT_EQ(earlier.has_value(), watch.lines() != before);
    return earlier.has_value();
  }

  std::deque<std::string> files;  // which the vocabulary's texts are part of
  Vocabulary words;
  Watch watch;
};

TEST_F(WatchedStore, HoldsWhatIsRead) {
  read("");
  read("a\n\n[A]\na\n[B]\n \t\na\r");
  read(std::string(1300, 'x') + "\nb\n" + std::string(511, ' ') + "c\n[A]\n" + std::string(600, '[') + "\nd");
  read(std::string("a\0b\n\0c\nd\n", 9) + std::string(511, '\0') + "e\n" + std::string(700, 'f') + '\0' + "g\nh\n");
}

TEST_F(WatchedStore, SeesNothingWhereNothingIsDone) {
  read("a\n[A]\na\na\n");
  EXPECT_FALSE(look());
}

TEST_F(WatchedStore, SeesALineThatIsWrittenAgainElsewhere) {
  read("[A]\na\n[B]\nb\n");
  discard(start);  // its memory can be used for the next line
  insertafter(start, makeentry("[A]"));
  EXPECT_TRUE(look());
  EXPECT_FALSE(look());
}

TEST_F(WatchedStore, SeesWhatIsGoneAtTheEnd) {
  read("[A]\na\nb\n");
  discard(last);
  EXPECT_TRUE(look());
  while (start != nullptr) discard(start);
  EXPECT_TRUE(look());
}

TEST_F(WatchedStore, SeesRandomEdits) {
  std::mt19937 random(3);
  const auto text = [&] {
    constexpr std::string_view texts[] = {"[A]", "[B]", "a", "b", "c=1", "c=12"};
    return std::string(texts[random() % std::size(texts)]);
  };
  int changed = 0;
  for (int round = 0; round < 500; ++round) {
    std::string bytes;
    for (std::size_t n = random() % 30; n > 0; --n) bytes += text() + '\n';
    read(bytes);
    for (int part = 0; part < 5; ++part) {
      for (std::size_t edits = random() % 4; edits > 0; --edits) {
        Line* line = start;
        for (std::size_t n = random() % 30; n > 0 && line != nullptr && line->next() != nullptr; --n) {
          line = line->next();
        }
        const std::size_t kind = random() % 3;
        if (line == nullptr || kind == 0) {
          Line* const added = makeentry(text());
          line == nullptr ? void(dlstore(added)) : insertafter(line, added);
        } else if (kind == 1) {
          discard(line);
        } else {
          settext(*line, Text{text()});
        }
      }
      changed += look() ? 1 : 0;
    }
  }
  EXPECT_GT(changed, 1000);
}

}  // namespace

}  // namespace tolvane::test
