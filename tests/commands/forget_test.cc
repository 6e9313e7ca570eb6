#include "commands/forget.h"

#include "document/pairs.h"
#include "legacy/merge.h"
#include "tests/support/program.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Forget : public ProgramTest {};

TEST_F(Forget, LeavesNoLinesAndNoPairs) {
  given("[A]\n");
  addpair("a", "b", 0);
  addpair("a", "b", 1);
  forget();
  EXPECT_EQ(start, nullptr);
  EXPECT_EQ(last, nullptr);
  EXPECT_EQ(pairs[0], nullptr);
  EXPECT_EQ(pairs[1], nullptr);
}

TEST_F(Forget, LeavesNoLinesThatAMergeKeptAside) {
  write(folder / "s", "[ConfigFile]\nFileType=Configuration 4.0\n");
  write(folder / "n", "[A]\n");
  EXPECT_THROW(convertpair((folder / "s").c_str(), (folder / "n").c_str(), [](const char* path) { load(path); }),
               Fatal);
  EXPECT_NE(systemstart, nullptr);
  forget();
  EXPECT_EQ(systemstart, nullptr);
  EXPECT_EQ(start, nullptr);
}

}  // namespace

}  // namespace tolvane::test
