#include "document/linestore.h"

#include <gmock/gmock.h>

#include "tests/support/program.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class LineStore : public ProgramTest {
 protected:
  LineStore() : path(folder / "a") { given(""); }
  ~LineStore() override { given(""); }

  /// The lines that are read from a file of this text.
  [[nodiscard]] std::string loaded(std::string_view text) const {
    write(path, text);
    given("");  // load frees nothing
    load(path.c_str());
    return lines();
  }

  /// What is written after a file of this text was read.
  [[nodiscard]] std::string saved(std::string_view text) const {
    (void)loaded(text);
    on(path, [](Original& original) { save(original); });
    return contents(path);
  }

  /// Lets an operation work on a file.
  template <typename Operation>
  static void on(const std::string& path, const Operation& operation) {
    Lock lock{path.c_str()};
    Original original = Original::replaced(lock, path.c_str());
    operation(original);
  }

  std::string path;
};

TEST_F(LineStore, IsEmptyForAFileOfBlankLinesAndSavesAnEmptyFile) {
  EXPECT_EQ(saved("\n  \n\t\n \t \n"), "");
  EXPECT_EQ(start, nullptr);
  EXPECT_EQ(last, nullptr);
}

TEST_F(LineStore, IsEmptyForAnEmptyFile) { EXPECT_EQ(saved(""), ""); }

TEST_F(LineStore, SavesNoEmptyLineBeforeAHeaderOnTheFirstLine) {
  EXPECT_EQ(saved("[A]\na=1\n"), "[A]\na=1\n");
  EXPECT_EQ(saved("\n\n[A]\na=1\n"), "[A]\na=1\n");
}

TEST_F(LineStore, SavesOneEmptyLineBeforeEachLaterHeader) {
  EXPECT_EQ(saved("; note\n[A]\n\na=1\n\n\n\n[B]\n[C]\n"), "; note\n\n[A]\na=1\n\n[B]\n\n[C]\n");
}

TEST_F(LineStore, EndsTheLastLineWithANewline) { EXPECT_EQ(saved("[A]\na=1"), "[A]\na=1\n"); }

TEST_F(LineStore, KeepsCarriageReturns) {
  EXPECT_EQ(saved("[A]\r\na=1\r\n[B]\r\n"), "[A]\r\na=1\r\n\n[B]\r\n");
  EXPECT_EQ(loaded("\r\na\r\n"), "\r\na\r\n") << "a carriage return is not blank";
}

TEST_F(LineStore, SplitsALineOf600Characters) {
  EXPECT_EQ(loaded(std::string(600, 'x') + "\n"), std::string(511, 'x') + "\n" + std::string(89, 'x') + "\n");
}

TEST_F(LineStore, DropsTheBlankRestOfALongLine) {
  EXPECT_EQ(loaded(std::string(511, 'x') + "   \nb\n"), std::string(511, 'x') + "\nb\n");
}

TEST_F(LineStore, HoldsALineOf511CharactersAsOne) {
  EXPECT_EQ(loaded(std::string(511, 'x') + "\nb\n"), std::string(511, 'x') + "\nb\n");
}

TEST_F(LineStore, EndsALineAtANulByte) { EXPECT_EQ(loaded(std::string_view("a\0b\nc\n\0d\ne\n", 11)), "a\nc\ne\n"); }

TEST_F(LineStore, ReportsAMissingInputFile) {
  try {
    load("no/such.qpx");
    FAIL() << "a missing file was loaded";
  } catch (const Fatal& end) {
    EXPECT_EQ(end.message, "Cannot open file no/such.qpx for input.");
  }
}

TEST_F(LineStore, IsEmptyForAFolder) {
  load(folder.c_str());
  EXPECT_EQ(lines(), "");
}

TEST_F(LineStore, ReportsAnOutputFileThatCannotBeOpened) {
  try {
    on("no/such.qpx", [](Original& original) { save(original); });
    FAIL() << "saved into a missing folder";
  } catch (const Fatal& end) {
    EXPECT_EQ(end.message, "Cannot open file no/such.qpx for output.");
  }
}

TEST_F(LineStore, ReportsAFullDisk) {
  given("a=1\n");
  try {
    on("/dev/full", [](Original& original) { save(original); });
    FAIL() << "nothing was written and nothing said";
  } catch (const Fatal& end) {
    EXPECT_EQ(end.message, "Error writing output file");
  }
}

TEST_F(LineStore, ReportsAFileThatCannotBeReadToItsEnd) {
  try {
    // The kernel opens this one and then refuses to read the page at address 0.
    load("/proc/self/mem");
    FAIL() << "half a file was loaded";
  } catch (const Fatal& end) {
    EXPECT_EQ(end.message, "Cannot open file /proc/self/mem for input.");
  }
}

TEST_F(LineStore, OutputReplacesTheFileAndLeavesNoTemporaryOne) {
  write(path, "old\n");
  given("new\n");
  on(path, [](Original& original) { output(original); });
  EXPECT_EQ(contents(path), "new\n");
  EXPECT_FALSE(std::filesystem::exists(path + "_tmp"));
}

TEST_F(LineStore, BackupKeepsTheOldContentsUnderTheSuffix) {
  write(path, "old\n\n\n");
  write(path + "_50", "older\n");
  write(path + "_tmp", "stale\n");
  given("new\n");
  on(path, [](Original& original) { backup(original, "50"); });
  EXPECT_EQ(contents(path), "new\n");
  EXPECT_EQ(contents(path + "_50"), "old\n\n\n");
  EXPECT_FALSE(std::filesystem::exists(path + "_tmp"));
}

TEST_F(LineStore, RefusesNamesThatAreTooLongBeforeItSaves) {
  const std::string head = folder.string() + "/";
  const std::string name = head + std::string(508 - head.size(), 'n');
  ASSERT_EQ(name.size(), 508U);
  given("new\n");
  EXPECT_THROW(on(name, [](Original& original) { output(original); }), TextTooLong);
  EXPECT_THROW(on(path, [](Original& original) { backup(original, std::string(511, '5')); }), TextTooLong);
  EXPECT_FALSE(std::filesystem::exists(path + "_tmp"));
}

TEST_F(LineStore, AppendsAtTheTailAndReturnsThePreviousOne) {
  Line* const first = makeentry();
  first->text.set("a");
  EXPECT_EQ(dlstore(first), nullptr);
  Line* const second = makeentry();
  second->text.set("b");
  EXPECT_EQ(dlstore(second), first);
  EXPECT_EQ(lines(), "a\nb\n");
}

TEST_F(LineStore, LinksALineBehindAnotherOne) {
  given("a\nc\n");
  for (const char* text : {"b", "d"}) {
    Line* const line = makeentry();
    line->text.set(text);
    insertafter(text[0] == 'b' ? start : last, line);
  }
  EXPECT_EQ(lines(), "a\nb\nc\nd\n");
}

TEST_F(LineStore, DiscardsAnyLine) {
  given("a\nb\nc\n");
  discard(start->next);
  EXPECT_EQ(lines(), "a\nc\n");
  discard(last);
  discard(start);
  EXPECT_EQ(lines(), "");
}

TEST(BlankLine, HasOnlyBlanksAndTabs) {
  EXPECT_TRUE(blankline(""));
  EXPECT_TRUE(blankline(" \t "));
  EXPECT_FALSE(blankline(" \r"));
  EXPECT_FALSE(blankline("\v"));
  EXPECT_FALSE(blankline(" a "));
}

}  // namespace

}  // namespace tolvane::test
