#include "tests/support/program.h"

namespace tolvane::test {

namespace {

const std::string usage =
    "Syntax: tolvane update  <filename.qpx>\n"
    "        tolvane merge   <filename.qpx> <config.def> <network.def>\n"
    "        tolvane fdbms   <filename.qpx>\n"
    "        tolvane install <filename.qpx>\n";

class CommandLine : public ProgramTest {};

TEST_F(CommandLine, WithAnUnknownCommandOrTheWrongNumberOfWordsShowsTheUsage) {
  const std::vector<std::string> lines[] = {
      {             },
      {"update"      },
      {"update",       "a", "b"},
      {"fdbms"          },
      {"install",        "a", "b"},
      {"setparameter",      "f", "[S]", "K"},
      {"setparameter",           "f", "[S]", "K", "V", "more"},
      {"merge", "a", "b"},
      {"setparameter",         "a"},
      {"Update",              "a"},
      {"update2", "a"},
      {"",           "a"},
      {"--help"       },
  };
  for (const std::vector<std::string>& words : lines) {
    EXPECT_EQ(run(words), (Outcome{0, usage})) << testing::PrintToString(words);
    EXPECT_EQ(filesin(folder), Files{});
  }
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
