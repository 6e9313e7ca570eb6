// Parsing bytes into the line store, and back.
#include "document/parse.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <vector>

#include "document/linestore.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

const std::string full(511, 'x');

class Parse : public StoreTest {
 protected:
  /// The lines that the store holds, each ended by a newline; what else parsing told is in `reading`.
  std::string parsed(std::string_view bytes) {
    given("");  // parsing frees nothing
    reading = parse(bytes);
    return lines();
  }

  Reading reading;
};

TEST_F(Parse, DropsAndCountsBlankLines) {
  EXPECT_EQ(parsed("a\n\n \t\n\r\nb\n"), "a\n\r\nb\n") << "a carriage return is not blank";
  EXPECT_EQ(linenumbers("a\n\n \t\n\r\nb\n"), (std::vector<std::size_t>{1, 4, 5}));
  EXPECT_EQ(reading.blank, 2U);
  EXPECT_EQ(reading.lines, 3U);
  EXPECT_EQ(parsed("\n  \n\t\n \t \n"), "");
  EXPECT_EQ(reading.blank, 4U);
  EXPECT_EQ(parsed(""), "");
  EXPECT_EQ(reading.blank, 0U);
  EXPECT_EQ(parsed("a\nb"), "a\nb\n");
}

TEST_F(Parse, SplitsLinesOfMoreThan511Characters) {
  EXPECT_EQ(parsed(std::string(600, 'x') + "\n"), full + "\n" + std::string(89, 'x') + "\n");
  EXPECT_EQ(parsed(full + "y\n" + full + full + "\n"), full + "\ny\n" + full + "\n" + full + "\n");
  EXPECT_EQ(linenumbers(full + "y\n" + full + full + "\n"), (std::vector<std::size_t>{1, 1, 2, 2}));
  EXPECT_EQ(reading.split, 2U);
  EXPECT_EQ(parsed(full + "\nb\n"), full + "\nb\n");
  EXPECT_EQ(reading.split, 0U);
  EXPECT_EQ(reading.blank, 0U) << "the newline behind a full line is no line";
  EXPECT_EQ(parsed(full + "   \nb\n"), full + "\nb\n");
  EXPECT_EQ(reading.blank, 1U);
  EXPECT_EQ(linenumbers(full + "   \nb\n"), (std::vector<std::size_t>{1, 2}));
}

TEST_F(Parse, EndsALineAtANulByte) {
  EXPECT_EQ(parsed(std::string_view("ab\0cd\n\0ef\n", 10)), "ab\n");
  EXPECT_EQ(reading.cut, 2U);
  EXPECT_EQ(reading.blank, 1U);
}

// The rule as it reads: fgets with 512 bytes, the newline removed, blank lines dropped.
std::string readbyfgets(std::string& bytes) {
  std::string expected;
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(fmemopen(bytes.data(), bytes.size(), "r"), std::fclose);
  for (char text[512]; file != nullptr && std::fgets(text, sizeof text, file.get()) != nullptr;) {
    text[std::strcspn(text, "\n")] = '\0';
    if (!blankline(text)) expected.append(text) += '\n';
  }
  return expected;
}

TEST_F(Parse, ReadsRandomBytesAsFgetsDoes) {
  std::mt19937 random(3);
  const std::string some("ab\n\n\n \t\r=\0[", 11);
  for (int round = 0; round < 300; ++round) {
    std::string bytes;
    while (random() % 30 != 0) {
      const std::size_t length = random() % 5 == 0 ? 505 + random() % 10 : random() % 4;
      bytes += std::string(length, 'x') + some[random() % some.size()];
    }
    ASSERT_EQ(parsed(bytes), readbyfgets(bytes)) << testing::PrintToString(bytes);
  }
}

class Contents : public Parse {
 protected:
  [[nodiscard]] std::string rewritten(std::string_view bytes) {
    (void)parsed(bytes);
    return tolvane::contents();
  }
};

TEST_F(Contents, HaveOneEmptyLineBeforeEachHeaderBelowTheFirstLine) {
  EXPECT_EQ(rewritten("[A]\na=1\n"), "[A]\na=1\n");
  EXPECT_EQ(rewritten("\n\n[A]\na=1\n"), "[A]\na=1\n");
  EXPECT_EQ(rewritten("; note\n[A]\n\na=1\n\n\n\n[B]\n[C]\n"), "; note\n\n[A]\na=1\n\n[B]\n\n[C]\n");
  EXPECT_EQ(rewritten(" \n"), "");
}

TEST_F(Contents, EndTheLastLineWithANewline) { EXPECT_EQ(rewritten("[A]\na=1"), "[A]\na=1\n"); }

TEST_F(Contents, HaveTheCarriageReturns) { EXPECT_EQ(rewritten("[A]\r\na=1\r\n[B]\r\n"), "[A]\r\na=1\r\n\n[B]\r\n"); }

TEST(BlankLine, HasOnlyBlanksAndTabs) {
  EXPECT_TRUE(blankline(""));
  EXPECT_TRUE(blankline(" \t "));
  EXPECT_FALSE(blankline(" \r"));
  EXPECT_FALSE(blankline("\v"));
  EXPECT_FALSE(blankline(" a "));
}

}  // namespace

}  // namespace tolvane::test
