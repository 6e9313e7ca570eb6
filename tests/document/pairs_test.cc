#include "document/pairs.h"

#include <random>
#include <set>
#include <string>

#include "document/ends.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Pairs : public StoreTest {};

TEST_F(Pairs, AddsAPairOnceToEachList) {
  EXPECT_EQ(addpair("a", "b", 0), 1);
  EXPECT_EQ(addpair("a", "b", 0), 0);
  EXPECT_EQ(addpair("a", "b", 1), 1);
  EXPECT_EQ(addpair("a", "c", 0), 1);
  EXPECT_EQ(addpair("a,b", "", 0), 1);
  ASSERT_NE(pairs[0], nullptr);
  EXPECT_STREQ(pairs[0]->text, "a,b");
  EXPECT_STREQ(pairs[0]->next->text, "a,c");
  EXPECT_STREQ(pairs[0]->next->next->text, "a,b,");
  EXPECT_EQ(pairs[0]->next->next->next, nullptr);
  EXPECT_EQ(pairs[1]->next, nullptr);
}

TEST_F(Pairs, HoldsAtMost1025Characters) {
  EXPECT_EQ(addpair(std::string(512, 'a'), std::string(512, 'b'), 0), 1);
  EXPECT_THROW(addpair(std::string(512, 'a'), std::string(513, 'b'), 0), TextTooLong);
}

TEST_F(Pairs, AreTheDistinctOnesOfRandomPairsInTheirOrder) {
  std::mt19937 random(1);
  std::set<std::string> distinct;
  std::vector<std::string> expected;
  for (int round = 0; round < 1000; ++round) {
    const std::string first = std::to_string(random() % 20);
    const std::string second = std::to_string(random() % 20);
    const bool fresh = distinct.insert(first + "," + second).second;
    if (fresh) expected.push_back(first + "," + second);
    ASSERT_EQ(addpair(first, second, 7), fresh ? 1 : 0);
  }
  EXPECT_EQ(pairs[0], nullptr);
  std::vector<std::string> texts;
  for (const Pair* pair = pairs[1]; pair != nullptr; pair = pair->next) texts.emplace_back(pair->text);
  EXPECT_EQ(texts, expected);
}

TEST_F(Pairs, AreNewAgainAfterForgetpairs) {
  addpair("a", "b", 0);
  addpair("a", "b", 1);
  forgetpairs();
  EXPECT_EQ(pairs[0], nullptr);
  EXPECT_EQ(pairs[1], nullptr);
  EXPECT_EQ(addpair("a", "c", 0), 1);
  EXPECT_EQ(addpair("a", "b", 0), 1);
  EXPECT_STREQ(pairs[0]->next->text, "a,b");
  EXPECT_EQ(addpair("a", "b", 1), 1);
  EXPECT_EQ(pairs[1]->next, nullptr);
}

}  // namespace

}  // namespace tolvane::test
