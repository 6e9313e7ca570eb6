#include "preview/escape.h"

#include <gtest/gtest.h>

namespace tolvane::test {

namespace {

TEST(HeaderName, QuotesWhatPatchWouldMisread) {
  EXPECT_EQ(headername("a.qpx"), "a.qpx");
  EXPECT_EQ(headername("\xc3\xa4.qpx"), "\xc3\xa4.qpx");
  EXPECT_EQ(headername("a b"), "a b\t");
  EXPECT_EQ(headername("a\tb"), "\"a\\tb\"");
  EXPECT_EQ(headername("a\nb\"c\\\x01\x7f"), "\"a\\nb\\\"c\\\\\\001\\177\"");
}

TEST(Quoted, WritesStringsOfJson) {
  EXPECT_EQ(quoted("k=1"), "\"k=1\"");
  EXPECT_EQ(quoted("a\"b\\c"), "\"a\\\"b\\\\c\"");
  EXPECT_EQ(quoted("\n\r\t\x01\x7f"), "\"\\u000a\\u000d\\u0009\\u0001\\u007f\"");
  EXPECT_EQ(quoted("\xc3\xa4\xf0\x9f\x98\x80"), "\"\xc3\xa4\xf0\x9f\x98\x80\"");
  EXPECT_EQ(quoted("\xc2\x9b"), "\"\\u009b\"");
}

TEST(Quoted, WritesOtherBytesAsLatin1) {
  EXPECT_EQ(quoted("\xe4=\"1\""), R"({"latin1":"\u00e4=\"1\""})");
  EXPECT_EQ(quoted("\xc3\xa4\xff"), R"({"latin1":"\u00c3\u00a4\u00ff"})");
}

}  // namespace

}  // namespace tolvane::test
