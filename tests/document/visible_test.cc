#include "document/visible.h"

#include <gtest/gtest.h>

namespace tolvane::test {

namespace {

TEST(Utf8Length, IsThatOfACharacterAndNoneForOtherBytes) {
  EXPECT_EQ(utf8length("abc"), 1U);
  EXPECT_EQ(utf8length("\xc3\xa4x"), 2U);
  EXPECT_EQ(utf8length("\xe2\x82\xacx"), 3U);
  EXPECT_EQ(utf8length("\xf0\x9f\x98\x80x"), 4U);
  EXPECT_EQ(utf8length(std::string_view("\0", 1)), 1U);
  EXPECT_EQ(utf8length("\x80"), 0U) << "no lead byte";
  EXPECT_EQ(utf8length("\xc3"), 0U) << "cut short";
  EXPECT_EQ(utf8length("\xc3("), 0U) << "no continuation";
  EXPECT_EQ(utf8length("\xc0\x80"), 0U) << "longer than need be";
  EXPECT_EQ(utf8length("\xe0\x9f\xbf"), 0U) << "longer than need be";
  EXPECT_EQ(utf8length("\xf0\x8f\xbf\xbf"), 0U) << "longer than need be";
  EXPECT_EQ(utf8length("\xed\xa0\x80"), 0U) << "a surrogate";
  EXPECT_EQ(utf8length("\xf4\x90\x80\x80"), 0U) << "beyond the last character";
  EXPECT_EQ(utf8length("\xff"), 0U);
}

TEST(Visible, LeavesWhatATerminalShows) {
  EXPECT_EQ(visible("k=\xc3\xa4 \\ \xe2\x82\xac~"), "k=\xc3\xa4 \\ \xe2\x82\xac~");
}

TEST(Visible, ShowsWhatATerminalWouldActUpon) {
  EXPECT_EQ(visible("a\tb\rc\nd"), "a\\tb\\rc\\nd");
  EXPECT_EQ(visible("\033[31m\x7f\b"), "\\x1b[31m\\x7f\\x08");
  EXPECT_EQ(visible("\xc2\x9b"
                    "31m"),
            "\\xc2\\x9b31m")
      << "the control sequence introducer of 8 bits, as UTF-8";
  EXPECT_EQ(visible("\x9b\xe4"), "\\x9b\\xe4") << "and as it is";
  EXPECT_EQ(visible("\xe2\x80\xae"), "\\xe2\\x80\\xae") << "from right to left";
  EXPECT_EQ(visible("\xe2\x80\xac\xd8\x9c"), "\\xe2\\x80\\xac\\xd8\\x9c");
}

}  // namespace

}  // namespace tolvane::test
