// Changes of every entry of a section.
#include <random>

#include "document/entries.h"
#include "document/fields.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Sections : public StoreTest {};

TEST_F(Sections, ChangeinsectionSetsAFieldOfEveryEntryButOfLaterDuplicates) {
  given("[N]\nk=a,b,c,d\nl=a\nm=a,b,c\nn=\no\n[B]\nk=a\n");
  changeinsection("[N]", 3, ',', "T");
  EXPECT_EQ(lines(), "[N]\nk=a,b,T,d\nl=a,,T\nm=a,b,T\nn=,,T\no=,,T\n[B]\nk=a\n");
  given("[N]\nk=1\nk=2\n=x\n");
  changeinsection("[N]", 2, ',', "T");
  EXPECT_EQ(lines(), "[N]\nk=1,T\nk=2\n=x,T\n");
}

TEST_F(Sections, ChangeinsectionDoesNothingWithoutLines) {
  given("[A]\n[N]\n");
  changeinsection("[N]", 1, ',', "T");
  changeinsection("[Missing]", 1, ',', "T");
  changeinsection("[A]", 1, ',', "T");
  EXPECT_EQ(lines(), "[A]\n[N]\n");
}

TEST_F(Sections, ReplaceinsectionReplacesEveryOccurrenceAlsoANewOne) {
  given("[N]\nx=SYS$M,SYS$M\ny=abc\nSYS$M\nSYS$M=1\n[B]\nx=SYS$M\n");
  replaceinsection("[N]", "SYS$M", "VELMSYS");
  EXPECT_EQ(lines(), "[N]\nx=VELMSYS,VELMSYS\ny=abc\nSYS$M\nSYS$M=1\n[B]\nx=SYS$M\n");
  given("[N]\nx=aabb\n");
  replaceinsection("[N]", "ab", "");
  EXPECT_EQ(lines(), "[N]\nx=\n");
}

TEST_F(Sections, ReplaceinsectionChangesTheFirstOfDuplicatesOnly) {
  given("[N]\nk=a\nk=xa\n");
  replaceinsection("[N]", "a", "c");
  EXPECT_EQ(lines(), "[N]\nk=c\nk=xa\n") << "the first value holds no \"a\" any more when the second line is visited";
  given("[N]\nk=b\nk=a\n");
  replaceinsection("[N]", "a", "c");
  EXPECT_EQ(lines(), "[N]\nk=b\nk=a\n");
}

TEST_F(Sections, ReplaceinsectionRefusesWhatWouldNeverEnd) {
  given("[N]\nk=ab\n");
  replaceinsection("[N]", "a", "aa");
  replaceinsection("[N]", "", "x");
  replaceinsection("[N]", "a", "a");
  replaceinsection("[Missing]", "a", "b");
  EXPECT_EQ(lines(), "[N]\nk=ab\n");
}

TEST_F(Sections, SwapcharsReplacesTheFirstOccurrence) {
  Text output;
  swapchars("abcab", "ab", "X", output);
  EXPECT_EQ(output, "Xcab");
  swapchars("aaab", "aab", "X", output);
  EXPECT_EQ(output, "aX");
  swapchars("abc", "q", "X", output);
  EXPECT_EQ(output, "abc");
  swapchars("abc", "", "X", output);
  EXPECT_EQ(output, "Xabc");
  EXPECT_THROW(swapchars(std::string(511, 'x'), "x", "yy", output), TextTooLong);
}

/// A section "[N]" of random lines, with duplicate keys.
std::string randomsection(std::mt19937& random) {
  std::string text = "[N]\n";
  for (std::size_t line = random() % 8; line > 0; --line) {
    text += "kl="[random() % 3];
    for (std::size_t field = random() % 4; field > 0; --field) text += std::string("=,") + "aab"[random() % 3];
    text += '\n';
  }
  return text + "[O]\nk=a\n";
}

TEST_F(Sections, ChangeAndReplaceInSectionDoWhatALookUpForEachLineDoes) {
  std::mt19937 random(1);
  for (int round = 0; round < 5000; ++round) {
    const std::string text = randomsection(random);
    const int n = 1 + static_cast<int>(random() % 3);
    given(text);
    for (const Line* line = below(find("[N]")); line != nullptr; line = nextinsection(line)) {
      const Text key{keyof(*line)};
      editentry("[N]", key, replacefield(getvalue("[N]", key), n, ',', "x,y"));
    }
    const std::string changed = lines();
    given(text);
    changeinsection("[N]", n, ',', "x,y");
    ASSERT_EQ(lines(), changed) << text;

    given(text);
    for (Line* line = below(find("[N]")); line != nullptr; line = nextinsection(line)) {
      Text value = getvalue("[N]", keyof(*line));
      while (within("a", value) != 0) {
        swapchars(value, "a", "xyz", value);
        rewrite(*line, keyof(*line), value);
      }
    }
    const std::string replaced = lines();
    given(text);
    replaceinsection("[N]", "a", "xyz");
    ASSERT_EQ(lines(), replaced) << text;
  }
}

}  // namespace

}  // namespace tolvane::test
