#include "tests/support/program.h"

namespace tolvane::test {

namespace {

const std::string usage =
    "Syntax: tolvane update  <filename.qpx>\n"
    "        tolvane merge   <filename.qpx> <config.def> <network.def>\n"
    "        tolvane fdbms   <filename.qpx>\n"
    "        tolvane install <filename.qpx>\n";

class CommandLine : public ProgramTest {
 protected:
  void expectusage(const std::vector<std::string>& words) const {
    EXPECT_EQ(run(words), (Outcome{0, usage})) << testing::PrintToString(words);
    EXPECT_EQ(filesin(folder), Files{});
  }
};

TEST_F(CommandLine, WithoutWordsShowsTheUsage) { expectusage({}); }

TEST_F(CommandLine, WithTheWrongNumberOfWordsShowsTheUsage) {
  expectusage({"update"});
  expectusage({"update", "a", "b"});
  expectusage({"fdbms"});
  expectusage({"install", "a", "b"});
  expectusage({"setparameter", "f", "[S]", "K"});
  expectusage({"setparameter", "f", "[S]", "K", "V", "more"});
  expectusage({"merge", "a", "b"});
  expectusage({"setparameter", "a"});
}

TEST_F(CommandLine, WithAnUnknownCommandShowsTheUsage) {
  expectusage({"Update", "a"});
  expectusage({"update2", "a"});
  expectusage({"", "a"});
  expectusage({"--help"});
}

TEST_F(CommandLine, InstallDoesNothingAndAnswers1) {
  EXPECT_EQ(run({"install", "x.qpx"}), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), Files{});
  write(folder / "x.qpx", "\n\n[A]\n");
  EXPECT_EQ(run({"install", "x.qpx"}), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), filesof("x.qpx", "\n\n[A]\n"));
}

}  // namespace

}  // namespace tolvane::test
