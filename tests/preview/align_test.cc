#include "preview/align.h"

#include <gmock/gmock.h>

#include <random>
#include <string>

namespace tolvane::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// An item of the one sequence and the equal one of the other.
using Pair = std::pair<std::size_t, std::size_t>;

std::vector<Pair> pairsof(const std::vector<Match>& matches) {
  std::vector<Pair> pairs;
  for (const Match& match : matches) {
    EXPECT_GT(match.length, 0U);
    if (!pairs.empty()) {
      EXPECT_NE(pairs.back(), Pair(match.before - 1, match.after - 1)) << "one match is enough";
    }
    for (std::size_t n = 0; n < match.length; ++n) pairs.emplace_back(match.before + n, match.after + n);
  }
  return pairs;
}

std::vector<Pair> aligned(const std::string& before, const std::string& after) {
  const std::vector<std::uint32_t> earlier(before.begin(), before.end());
  const std::vector<std::uint32_t> later(after.begin(), after.end());
  Repeats repeats;
  for (const std::uint32_t item : earlier) repeats.push_back(item);
  const std::vector<Match> matches = align(earlier, later, 128);
  EXPECT_EQ(align(repeats, later, 128), matches);
  return pairsof(matches);
}

void expectcommon(const std::string& before, const std::string& after, std::size_t most) {
  const std::vector<Pair> matches = aligned(before, after);
  EXPECT_EQ(matches.size(), most) << before << " and " << after;
  for (std::size_t n = 0; n < matches.size(); ++n) {
    EXPECT_EQ(before[matches[n].first], after[matches[n].second]);
    if (n == 0) continue;
    EXPECT_LT(matches[n - 1].first, matches[n].first);
    EXPECT_LT(matches[n - 1].second, matches[n].second);
  }
}

TEST(Align, PairsWhatIsEqualInOrder) {
  EXPECT_THAT(aligned("", ""), IsEmpty());
  EXPECT_THAT(aligned("abc", ""), IsEmpty());
  EXPECT_THAT(aligned("", "abc"), IsEmpty());
  EXPECT_THAT(aligned("abc", "xyz"), IsEmpty());
  EXPECT_THAT(aligned("abc", "abc"), ElementsAre(Pair{0, 0}, Pair{1, 1}, Pair{2, 2}));
  EXPECT_THAT(aligned("abc", "axc"), ElementsAre(Pair{0, 0}, Pair{2, 2}));
  EXPECT_THAT(aligned("abc", "xab"), ElementsAre(Pair{0, 1}, Pair{1, 2}));
}

TEST(Align, FindsTheLongestCommonSequence) {
  expectcommon("bcda", "abcd", 3);       // what moved is the single one
  expectcommon("abcabba", "cbabac", 4);  // the classic pair: "baba" or "caba"
  expectcommon("xaxbx", "axbx", 4);      // one of the repeated is gone
  expectcommon("aaaa", "aa", 2);
  expectcommon("1a2b3", "4a5b6", 2);
  expectcommon("abcdefgh", "hgfedcba", 1);
}

TEST(Align, KeepsALargePieceOfRepetitionsInBounds) {
  // No item stands once, and the table would have 4 * 10^8 cells.
  std::string before = "[";
  std::string after = "]";
  for (int n = 0; n < 10000; ++n) before += "xy";
  for (int n = 0; n < 10000; ++n) after += "yx";
  const std::vector<Pair> matches = aligned(before + "(", after + ")");
  EXPECT_GE(matches.size(), 10000U);
  for (const auto& [earlier, later] : matches) ASSERT_EQ(before[earlier], after[later]);
}

TEST(Align, PairsWhatStandsAmongLongRepeats) {
  Repeats before;
  for (int n = 0; n < 100; ++n) {
    before.push_back(1);
    for (int blank = 0; blank < 10000; ++blank) before.push_back(2);
  }
  ASSERT_EQ(before.size(), 1000100U);
  EXPECT_EQ(before[99], 2U);
  EXPECT_EQ(before[10001], 1U);
  EXPECT_EQ(before[0], 1U);
  const std::vector<std::uint32_t> after{1, 2, 1, 3};
  EXPECT_THAT(pairsof(align(before, after, 4)), ElementsAre(Pair{0, 0}, Pair{1, 1}, Pair{10001, 2}));
}

/// The length of the longest common subsequence, by its definition.
std::size_t longest(const std::string& before, const std::string& after) {
  std::vector<std::vector<std::size_t>> table(before.size() + 1, std::vector<std::size_t>(after.size() + 1));
  for (std::size_t i = 1; i <= before.size(); ++i) {
    for (std::size_t j = 1; j <= after.size(); ++j) {
      table[i][j] =
          before[i - 1] == after[j - 1] ? table[i - 1][j - 1] + 1 : std::max(table[i - 1][j], table[i][j - 1]);
    }
  }
  return table[before.size()][after.size()];
}

TEST(Align, IsLongestWhereEveryItemStandsOnce) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    std::string before = "abcdefghijklmnopqrst";
    std::shuffle(before.begin(), before.end(), random);
    std::string after = before.substr(0, 15) + "UVWXYZ";
    std::shuffle(after.begin() + static_cast<int>(random() % 10), after.end(), random);
    expectcommon(before, after, longest(before, after));
  }
}

TEST(Align, AscendsWhateverTheItemsAre) {
  std::mt19937 random(8);
  for (int round = 0; round < 500; ++round) {
    std::string before(random() % 30, 'a');
    std::string after(random() % 30, 'a');
    for (char& item : before) item = static_cast<char>('a' + random() % 6);
    for (char& item : after) item = static_cast<char>('a' + random() % 6);
    const std::vector<Pair> matches = aligned(before, after);
    EXPECT_LE(matches.size(), longest(before, after));
    expectcommon(before, after, matches.size());
  }
}

}  // namespace

}  // namespace tolvane::test
