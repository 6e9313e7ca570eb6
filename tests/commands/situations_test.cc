// Surroundings that are not as they should be: what a run then leaves.
#include <unistd.h>

#include <utility>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

const std::string old = "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44\n";
const std::string converted = "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.45\n";

class Situations : public ProgramTest {
 protected:
  /// Runs the program as an ordinary user, who is no owner of anything here.
  [[nodiscard]] Outcome runasother(const std::vector<std::string>& words) const {
    if (geteuid() != 0) return run(words);
    // The program may stand where nobody else gets in.
    const std::string program = folder.string() + ".program";
    fs::copy_file(TOLVANE_PROGRAM, program, fs::copy_options::overwrite_existing);
    std::vector<std::string> command{"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", program};
    command.insert(command.end(), words.begin(), words.end());
    const Outcome outcome = spawn(std::move(command));
    fs::remove(program);
    return outcome;
  }
};

TEST_F(Situations, AHardLinkKeepsTheOldContentsUnderItsOtherName) {
  write(folder / "a", old);
  fs::create_hard_link(folder / "a", folder / "other");
  EXPECT_EQ(run({"update", "a"}), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a",     converted},
                                 {"a_544", old      },
                                 {"other", old      }
  }));
}

TEST_F(Situations, AHardLinkIsSetUnderBothNames) {
  write(folder / "a", "[A]\n");
  fs::create_hard_link(folder / "a", folder / "other");
  EXPECT_EQ(run({"setparameter", "a", "[A]", "k", "1"}), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a",     "[A]\nk=1\n"},
                                 {"other", "[A]\nk=1\n"}
  }));
}

TEST_F(Situations, AFolderThatMayNotBeWrittenKeepsItsFiles) {
  write(folder / "a", old);
  fs::permissions(folder / "a", fs::perms{0444});
  fs::permissions(folder, fs::perms{0555});
  EXPECT_EQ(runasother({"update", "a"}), (Outcome{0, "Cannot open file a_tmp for output.\n"}));
  EXPECT_EQ(runasother({"fdbms", "a"}), (Outcome{0, "Cannot open file a_tmp for output.\n"}));
  EXPECT_EQ(runasother({"setparameter", "a", "[A]", "k", "1"}), (Outcome{0, "Cannot open file a for output.\n"}));
  fs::permissions(folder, fs::perms{0755});
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a", old}
  }));
}

TEST_F(Situations, AFileThatMayNotBeReadIsReported) {
  write(folder / "a", old);
  fs::permissions(folder / "a", fs::perms{0});
  fs::permissions(folder, fs::perms{0755});
  EXPECT_EQ(runasother({"update", "a"}), (Outcome{0, "Cannot open file a for input.\n"}));
}

TEST_F(Situations, AnEmptyFileGetsASection) {
  write(folder / "a", "");
  EXPECT_EQ(run({"setparameter", "a", "[A]", "k", "1"}), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a", "[A]\nk=1\n"}
  }));
}

TEST_F(Situations, ANameTooLongForTheTemporaryOneKeepsTheFile) {
  // The file system takes 255 characters: 251 leave room for "_tmp" and "_544", 252 do not.
  const std::string fits(251, 'n');
  write(folder / fits, old);
  EXPECT_EQ(run({"update", fits}), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), (Files{
                                 {fits,          converted},
                                 {fits + "_544", old      }
  }));

  const std::string longer(252, 'n');
  write(folder / longer, old);
  EXPECT_EQ(run({"update", longer}), (Outcome{0, "Cannot open file " + longer + "_tmp for output.\n"}));
  EXPECT_EQ(contents(folder / longer), old);
}

TEST_F(Situations, AMillionCharactersWithoutANewlineAreSplit) {
  write(folder / "a", old + std::string(1000000, 'x'));
  EXPECT_EQ(run({"update", "a"}), (Outcome{1, ""}));
  std::string expected = converted;
  for (int line = 0; line < 1000000 / 511; ++line) expected += std::string(511, 'x') + "\n";
  expected += std::string(1000000 % 511, 'x') + "\n";
  EXPECT_EQ(contents(folder / "a"), expected);
}

}  // namespace

}  // namespace tolvane::test
