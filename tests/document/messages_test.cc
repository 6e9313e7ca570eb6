#include "document/messages.h"

#include <gtest/gtest.h>

namespace tolvane::test {

namespace {

// Neither stream of these tests is a terminal; tests/commands/terminal_test.cc has one.

TEST(Messages, GiveAFileEveryByteAsItIs) {
  testing::internal::CaptureStdout();
  say("\nWarning: \x1b[31m\xff\t!\n");
  sayline("Cannot open file a\nb\x1b for input.");
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "\nWarning: \x1b[31m\xff\t!\nCannot open file a\nb\x1b for input.\n");
}

TEST(Messages, OfComplaintsNameTheProgram) {
  testing::internal::CaptureStderr();
  complain({"cannot replace ", "a\x1b", ": ", "why"});
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "tolvane: cannot replace a\x1b: why\n");
}

}  // namespace

}  // namespace tolvane::test
