#include "preview/unified.h"

#include <random>

#include "tests/support/preview.h"

namespace tolvane::test {

namespace {

std::string numbered(int from, int to) {
  std::string text;
  for (int n = from; n <= to; ++n) text += std::to_string(n) + '\n';
  return text;
}

std::string between(const std::string& before, const std::string& after) {
  std::string diff;
  unified(before, after, "a", "b", [&](std::string_view piece) {
    EXPECT_TRUE(piece.ends_with('\n')) << "whole lines";
    diff += piece;
  });
  return diff;
}

TEST(UnifiedDiff, IsEmptyForTheSameText) {
  EXPECT_EQ(between("", ""), "");
  EXPECT_EQ(between("a\nb", "a\nb"), "");
}

TEST(UnifiedDiff, ShowsThreeLinesAroundAChange) {
  EXPECT_EQ(between(numbered(1, 9), numbered(1, 4) + "x\n" + numbered(6, 9)),
            "--- a\n+++ b\n@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+x\n 6\n 7\n 8\n");
}

TEST(UnifiedDiff, JoinsChangesThatAreNear) {
  // Six lines lie between the first two changes, seven between the others.
  EXPECT_EQ(between(numbered(1, 20), "x\n" + numbered(2, 7) + "y\n" + numbered(9, 15) + "z\n" + numbered(17, 20)),
            "--- a\n+++ b\n"
            "@@ -1,11 +1,11 @@\n-1\n+x\n 2\n 3\n 4\n 5\n 6\n 7\n-8\n+y\n 9\n 10\n 11\n"
            "@@ -13,7 +13,7 @@\n 13\n 14\n 15\n-16\n+z\n 17\n 18\n 19\n");
}

TEST(UnifiedDiff, CountsAsPatchDoes) {
  EXPECT_EQ(between("", "x\n"), "--- a\n+++ b\n@@ -0,0 +1 @@\n+x\n");
  EXPECT_EQ(between("x\n", ""), "--- a\n+++ b\n@@ -1 +0,0 @@\n-x\n");
  EXPECT_EQ(between("1\n", "1\n2\n"), "--- a\n+++ b\n@@ -1 +1,2 @@\n 1\n+2\n");
}

TEST(UnifiedDiff, SaysWhereANewlineIsMissing) {
  EXPECT_EQ(between("1\n2", "1\n2\n"), "--- a\n+++ b\n@@ -1,2 +1,2 @@\n 1\n-2\n\\ No newline at end of file\n+2\n");
  EXPECT_EQ(between("1\n2", "0\n2"), "--- a\n+++ b\n@@ -1,2 +1,2 @@\n-1\n+0\n 2\n\\ No newline at end of file\n");
}

TEST(ShownDiff, IsFitForATerminal) {
  EXPECT_EQ(shown("--- a\n+++ b\n@@ -1 +1 @@\n-x\r\n+\033\n c\n", false),
            "--- a\n+++ b\n@@ -1 +1 @@\n-x\\r\n+\\x1b\n c\n");
  EXPECT_EQ(
      shown("--- a\n+++ b\n@@ -1 +1 @@\n-x\n+y\n c\n", true),
      "\033[1m--- a\033[0m\n\033[1m+++ b\033[0m\n\033[36m@@ -1 +1 @@\033[0m\n\033[31m-x\033[0m\n\033[32m+y\033[0m\n"
      " c\n");
}

class Patched : public PreviewTest {
 protected:
  void expectpatched(const std::string& before, const std::string& after) const {
    write(folder / "a", before);
    const std::string diff = between(before, after);
    if (diff.empty()) {
      EXPECT_EQ(before, after);
    } else {
      EXPECT_EQ(patched("a", diff), after) << diff;
    }
  }
};

TEST_F(Patched, GivesTheOtherTextByteForByte) {
  expectpatched("", "a\n");
  expectpatched("a\r\nb\r\n\n\n c\n", "a\r\nx\r\n c\n");
  expectpatched("a\nb", "a\nb\n");
  expectpatched("-- x\n++ y\n\\ z\n@@\n", "\\ z\n--- \n@@\n");
  expectpatched(std::string("a\0b\nc\n\0\n", 9), "a\nc\n");
}

TEST_F(Patched, GivesTheOtherTextForRandomLines) {
  std::mt19937 random(5);
  const auto text = [&](unsigned letters) {
    std::string result;
    for (std::size_t n = random() % 60; n > 0; --n)
      result += std::string(1, static_cast<char>('a' + random() % letters)) + '\n';
    if (!result.empty() && random() % 3 == 0) result.pop_back();
    return result;
  };
  for (int round = 0; round < 60; ++round) {
    const unsigned letters = round % 2 == 0 ? 3 : 26;
    const std::string before = text(letters);
    std::string after = text(letters);
    if (!after.ends_with('\n')) after += '\n';
    if (random() % 2 == 0) after = before.substr(0, before.size() / 2) + '\n' + after;
    expectpatched(before, after);
  }
}

}  // namespace

}  // namespace tolvane::test
