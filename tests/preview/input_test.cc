#include "preview/input.h"

#include <cerrno>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

class ReadInput : public ProgramTest {};

TEST_F(ReadInput, ReadsTheFileOrTellsWhyNot) {
  write(folder / "a", "x\n");
  EXPECT_EQ(readinput((folder / "a").c_str()).bytes, "x\n");
  EXPECT_EQ(readinput((folder / "a").c_str()).error, 0);
  EXPECT_EQ(readinput((folder / "b").c_str()).error, ENOENT);
  EXPECT_EQ(readinput(folder.c_str()).error, EISDIR);
  EXPECT_EQ(readinput("/dev/zero").error, EFBIG);
  std::filesystem::resize_file(folder / "a", largestinput);
  EXPECT_EQ(readinput((folder / "a").c_str()).error, 0);
  std::filesystem::resize_file(folder / "a", largestinput + 1);
  EXPECT_EQ(readinput((folder / "a").c_str()).error, EFBIG);
}

}  // namespace

}  // namespace tolvane::test
