#include "preview/input.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <random>

#include "document/ends.h"
#include "document/linestore.h"
#include "document/watch.h"
#include "tests/support/program.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> texts(const Reading& reading) {
  std::vector<std::string> result;
  for (const Loaded& line : reading.lines) result.emplace_back(line.text);
  return result;
}

std::vector<std::size_t> numbers(const Reading& reading) {
  std::vector<std::size_t> result;
  for (const Loaded& line : reading.lines) result.push_back(line.number);
  return result;
}

TEST(ReadingOf, DropsBlankLines) {
  const Reading reading = readingof("a\n\n \t\n\r\nb\n");
  EXPECT_THAT(texts(reading), ElementsAre("a", "\r", "b"));
  EXPECT_THAT(numbers(reading), ElementsAre(1, 4, 5));
  EXPECT_EQ(reading.blank, 2U);
  EXPECT_EQ(reading.split, 0U);
  EXPECT_THAT(texts(readingof("")), IsEmpty());
  EXPECT_EQ(readingof("").blank, 0U);
  EXPECT_THAT(texts(readingof("a\nb")), ElementsAre("a", "b"));
}

TEST(ReadingOf, SplitsLongLines) {
  const std::string full(511, 'x');
  const std::string fitting = full + "\nb\n";
  EXPECT_THAT(texts(readingof(fitting)), ElementsAre(full, "b"));
  EXPECT_EQ(readingof(fitting).split, 0U);
  EXPECT_EQ(readingof(fitting).blank, 0U) << "the newline behind a full line is no line";
  const std::string bytes = full + "y\n" + full + full + "\n";
  const Reading reading = readingof(bytes);
  EXPECT_THAT(texts(reading), ElementsAre(full, "y", full, full));
  EXPECT_THAT(numbers(reading), ElementsAre(1, 1, 2, 2));
  EXPECT_EQ(reading.split, 2U);
  EXPECT_EQ(readingof(full + "  \n").blank, 1U) << "a blank rest is dropped";
}

TEST(ReadingOf, EndsALineAtANulByte) {
  const Reading reading = readingof(std::string_view("ab\0cd\n\0ef\n", 10));
  EXPECT_THAT(texts(reading), ElementsAre("ab"));
  EXPECT_EQ(reading.cut, 2U);
  EXPECT_EQ(reading.blank, 1U);
}

Input given;

class ReadingAndLoading : public StoreTest {
 protected:
  ReadingAndLoading() {
    watch.open = [](const char*) { return serve(given); };
  }
  ~ReadingAndLoading() override { watch = nobody; }
};

TEST_F(ReadingAndLoading, AgreeOnRandomBytes) {
  std::mt19937 random(3);
  const std::string some("ab\n\n\n \t\r=\0[", 11);
  for (int round = 0; round < 300; ++round) {
    given.bytes.clear();
    while (random() % 30 != 0) {
      const std::size_t length = random() % 5 == 0 ? 505 + random() % 10 : random() % 4;
      given.bytes += std::string(length, 'x') + some[random() % some.size()];
    }
    test::given("");
    load("");
    std::string expected;
    for (const Loaded& line : readingof(given.bytes).lines) expected += std::string(line.text) + '\n';
    ASSERT_EQ(lines(), expected) << testing::PrintToString(given.bytes);
  }
}

TEST_F(ReadingAndLoading, EndTheSameWayWhenReadingFails) {
  given = {"[A]\n", 0, EIO};
  EXPECT_THROW(load("a"), Fatal);
  test::given("");  // load frees nothing
  given = {"[A]\n", 0, EISDIR};
  load("a");
  EXPECT_EQ(lines(), "[A]\n") << "a folder is an empty file";
  test::given("");
  given = {"", ENOENT, 0};
  EXPECT_THROW(load("a"), Fatal);
  given = {"", ENOMEM, 0};
  EXPECT_THROW(load("a"), std::bad_alloc);
  given = {};
}

class ReadInput : public ProgramTest {};

TEST_F(ReadInput, ReadsEveryByte) {
  std::string bytes;
  for (int n = 0; n < 200000; ++n) bytes += static_cast<char>(n * 7);
  write(folder / "a", bytes);
  EXPECT_EQ(readinput((folder / "a").c_str()).bytes, bytes);
  EXPECT_EQ(readinput((folder / "b").c_str()).openerror, ENOENT);
  EXPECT_EQ(readinput(folder.c_str()).readerror, EISDIR);
  EXPECT_EQ(readinput("/dev/zero").readerror, EFBIG);
}

}  // namespace

}  // namespace tolvane::test
