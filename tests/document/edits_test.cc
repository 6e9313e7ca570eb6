#include "document/edits.h"

#include "document/entries.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Edits : public StoreTest {};

TEST_F(Edits, OfABlockAreDoneInTheirOrder) {
  given("[A]\na=0\n");
  constexpr Edit added[] = {
      {"b", "1"},
      {"a", "2"}
  };
  constexpr Edit changed[] = {
      {"a", "3"},
      {"c", "4"}
  };
  saveall("[A]", added);
  each(editentry, "[A]", changed);
  EXPECT_EQ(lines(), "[A]\na=3\nb=1\na=2\n");
  given("[A]\na=0\n");
  each(saveentry, "[A]", added);
  EXPECT_EQ(lines(), "[A]\na=0\nb=1\na=2\n");
}

TEST_F(Edits, TakeAnEntryWithItsValue) {
  given("[A]\na=1\na=2\nb\n");
  Text value;
  EXPECT_TRUE(takeentry("[A]", "a", value));
  EXPECT_EQ(value, "1");
  EXPECT_FALSE(takeentry("[A]", "c", value));
  EXPECT_EQ(value, "");
  EXPECT_EQ(takeentry("[A]", "b", "fallback"), "");
  EXPECT_EQ(takeentry("[A]", "b", "fallback"), "fallback");
  EXPECT_EQ(lines(), "[A]\na=2\n");
}

TEST_F(Edits, MoveAnEntryToTheEndOfASection) {
  given("[A]\na=1\nb=2\n");
  moveentry("[A]", "a", "[A]", "c");
  moveentry("[A]", "b", "[B]", "b");
  moveentry("[A]", "missing", "[C]", "d");
  EXPECT_EQ(lines(), "[A]\nc=1\n[B]\nb=2\n");
}

TEST_F(Edits, ReadTheNumberOfAnEntry) {
  given("[A]\na=12,3\nb=x\n");
  EXPECT_EQ(numberin("[A]", "a"), 12);
  EXPECT_EQ(numberin("[A]", "b"), 0);
  EXPECT_EQ(numberin("[A]", "c"), 0);
}

TEST_F(Edits, MinvalueRaisesASmallerNumberOrAddsIt) {
  given("[A]\nkey=100\n");
  minvalue("[A]", "key", "200");
  EXPECT_EQ(lines(), "[A]\nkey=200\n");
  given("[A]\nkey=60\npages=2048 # pages\n");
  minvalue("[A]", "key", "050");
  minvalue("[A]", "key", "60");
  minvalue("[A]", "pages", "2048");
  EXPECT_EQ(lines(), "[A]\nkey=60\npages=2048 # pages\n");
  given("[A]\na=1\n[B]\n");
  minvalue("[A]", "key", "200");
  EXPECT_EQ(lines(), "[A]\na=1\nkey=200\n[B]\n");
}

TEST_F(Edits, MinvalueCountsTextAs0AndWritesTheMinimumAsItStands) {
  given("[A]\nkey=abc\nneg=abc\n");
  minvalue("[A]", "key", "007 pages");
  minvalue("[A]", "neg", "-1");
  EXPECT_EQ(lines(), "[A]\nkey=007 pages\nneg=abc\n");
}

}  // namespace

}  // namespace tolvane::test
