#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Step537 : public StoreTest {};
class Step539 : public StoreTest {};
class Step540 : public StoreTest {};

/// "[config]" after step "5.37", the console log given.
std::string config537(const std::string& lines) {
  const std::string head = "[Startup]\nmaxconsolelogsize=1\n[config]\n";
  return behind(head, converted("5.37", "[Startup]\nmaxconsolelogsize=1048576\n[config]\n" + lines));
}

TEST_F(Step537, CountsRoutineBuffersInKilobytesIn64Bits) {
  EXPECT_EQ(config537("routines=100,2\nrbufsiz=32\n"), "routines=3\nrbufsiz=32\n");
  EXPECT_EQ(config537("routines=-100\nrbufsiz=32\n"), "routines=-3\nrbufsiz=32\n");
  EXPECT_EQ(config537("routines=3000000000\nrbufsiz=3000000000\n"), "routines=8789062500000000\nrbufsiz=3000000000\n");
  // (2^63 - 1) * 2 wraps to -2, and that divided by 1024 is 0.
  EXPECT_EQ(config537("routines=9223372036854775807\nrbufsiz=2\n"), "routines=0\nrbufsiz=2\n");
}

TEST_F(Step537, Takes32ForABufferSizeThatSaysNothing) {
  EXPECT_EQ(config537("routines=512\n"), "routines=16\n");
  EXPECT_EQ(config537("routines=512\nrbufsiz=0\n"), "routines=16\nrbufsiz=0\n");
  EXPECT_EQ(config537("routines=512\nrbufsiz=x\n"), "routines=16\nrbufsiz=x\n");
}

TEST_F(Step537, CountsTheConsoleLogInMegabytes) {
  const std::string config = "[config]\nroutines=0\n[Startup]\nmaxconsolelogsize=";
  EXPECT_EQ(converted("5.37", config + "5242880\n"), config + "5\n");
  EXPECT_EQ(converted("5.37", config + "1048575\n"), config + "0\n");
  EXPECT_EQ(converted("5.37", config + "-1048577\n"), config + "-1\n");
}

TEST_F(Step537, AddsRoutinesAndConsoleLogWhenTheyAreMissing) {
  EXPECT_EQ(converted("5.37", "[Startup]\n[config]\n"), "[Startup]\nmaxconsolelogsize=5\n[config]\nroutines=0\n");
}

TEST_F(Step537, DeletesTheImplheapThatStep536HasSet) {
  const std::string before =
      converted("5.36", "[Startup]\nmaxconsolelogsize=0\n[config]\nroutines=0\nlocksiz=1179648\n");
  EXPECT_EQ(before, "[Startup]\nmaxconsolelogsize=0\n[config]\nroutines=0\nlocksiz=1179648\nimplheap=131072\n");
  EXPECT_EQ(converted("5.37", before), "[Startup]\nmaxconsolelogsize=0\n[config]\nroutines=0\nlocksiz=1179648\n");
}

TEST_F(Step537, DeletesImplheap) { EXPECT_EQ(config537("implheap=131072\nroutines=0\n"), "routines=0\n"); }

TEST_F(Step539, AppendsTheDirectoriesToTheJournalSection) {
  EXPECT_EQ(converted("5.39", "[Journal]\nCurrentDirectory=/j/\n[A]\n"),
            "[Journal]\nCurrentDirectory=/j/\nCurrentDirectory=\nAlternateDirectory=\nFileSizeLimit=\n[A]\n");
  EXPECT_EQ(converted("5.39", "[A]\n"), "[A]\n[Journal]\nCurrentDirectory=\nAlternateDirectory=\nFileSizeLimit=\n");
}

TEST_F(Step540, DeletesTheJournalMode) {
  EXPECT_EQ(converted("5.40", "[Startup]\njournalmode=1\nx=1\n[A]\njournalmode=2\n"),
            "[Startup]\nx=1\n[A]\njournalmode=2\n");
}

}  // namespace

}  // namespace tolvane::test
