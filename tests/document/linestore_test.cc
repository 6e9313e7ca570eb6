#include "document/linestore.h"

#include "document/forget.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class LineStore : public StoreTest {};

TEST_F(LineStore, AppendsAtTheTailAndReturnsThePreviousOne) {
  Line* const first = makeentry("a");
  EXPECT_EQ(dlstore(first), nullptr);
  Line* const second = makeentry("b");
  EXPECT_EQ(dlstore(second), first);
  EXPECT_EQ(lines(), "a\nb\n");
}

TEST_F(LineStore, LinksALineBehindAnotherOne) {
  given("a\nc\n");
  for (const char* text : {"b", "d"}) {
    insertafter(text[0] == 'b' ? start : last, makeentry(text));
  }
  EXPECT_EQ(lines(), "a\nb\nc\nd\n");
}

TEST_F(LineStore, DiscardsAnyLine) {
  given("a\nb\nc\n");
  discard(start->next());
  EXPECT_EQ(lines(), "a\nc\n");
  discard(last);
  discard(start);
  EXPECT_EQ(lines(), "");
}

/// What a store of the one lines holds when they were aside while it got the others.
std::string putback(std::string_view aside, std::string_view others) {
  given(aside);
  Aside taken;
  EXPECT_EQ(lines(), "");
  given(others);
  Aside moved{std::move(taken)};
  moved.putback();
  EXPECT_EQ(moved.first(), nullptr);
  moved.putback();
  return lines();
}

TEST_F(LineStore, GetsTheLinesBackThatWereAside) {
  EXPECT_EQ(putback("a\nb\n", "c\nd\n"), "a\nb\nc\nd\n");
  EXPECT_EQ(putback("a\n", ""), "a\n");
  EXPECT_EQ(putback("", "a\n"), "a\n");
  EXPECT_EQ(putback("", ""), "");
}

TEST_F(LineStore, IsWithoutTheLinesThatAreNeverPutBack) {
  given("a\nb\n");
  {
    const Aside lost;  // the sanitized tests report lines that nobody frees
    EXPECT_EQ(lost.first()->text(), "a");
  }
  EXPECT_EQ(lines(), "");
}

TEST(Forget, LeavesNoLinesAndNoPairs) {
  given("[A]\n");
  addpair("a", "b", 0);
  addpair("a", "b", 1);
  forget();
  EXPECT_EQ(lines(), "");
  EXPECT_EQ(pairs[0], nullptr);
  EXPECT_EQ(pairs[1], nullptr);
}

}  // namespace

}  // namespace tolvane::test
