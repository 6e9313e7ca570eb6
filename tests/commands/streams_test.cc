// Standard streams that are closed, or that nobody reads.
#include <csignal>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

class Streams : public ProgramTest {
 protected:
  static inline const std::string old = "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=HP/UX~Unix~5.44\n";
  static inline const std::string converted = "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=HP/UX~Unix~5.45\n";

  Streams() { write(folder / "a", old); }

  /// Runs the program by a line of the shell in which "$@" is its command line.
  [[nodiscard]] Outcome runby(const std::string& shell, const std::vector<std::string>& words) const {
    return ProgramTest::runby({"/bin/sh", "-c", shell, "sh"}, words);
  }

  void expectupdated() const { EXPECT_EQ(filesin(folder), filesof("a", converted, "a_544", old)); }
};

TEST_F(Streams, ThatAreClosedGetNothingOfAFile) {
  for (const char* closed : {"<&-", ">&-", "2>&-", "<&- >&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
    write(folder / "a", old);
    EXPECT_EQ(runby(std::string("exec \"$@\" ") + closed, {"update", "a"}).status, 1) << closed;
    expectupdated();
  }
}

TEST_F(Streams, ThatAreClosedLeaveAFileThatIsWrittenStraightOver) {
  for (const char* closed : {"<&-", ">&-", "2>&-", "<&- >&- 2>&-"}) {
    write(folder / "a", old);
    EXPECT_EQ(runby(std::string("exec \"$@\" ") + closed, {"setparameter", "a", "[config]", "k", "1"}).status, 1);
    EXPECT_EQ(contents(folder / "a"), old + "k=1\n") << closed;
  }
}

TEST_F(Streams, ThatAreClosedAreNoFiles) {
  EXPECT_EQ(runby("exec \"$@\" <&-", {"update", "/dev/stdin"}),
            (Outcome{0, "Cannot open file /dev/stdin for input.\n"}));
}

TEST_F(Streams, ThatNobodyReadsEndTheRunWhenTheFilesAreInOrder) {
  const Outcome outcome = runby("{ \"$@\"; echo $? >status; } | true", {"update", "a"});
  EXPECT_EQ(contents(folder / "status"), std::to_string(128 + SIGPIPE) + "\n");
  std::filesystem::remove(folder / "status");
  expectupdated();
}

}  // namespace

}  // namespace tolvane::test
