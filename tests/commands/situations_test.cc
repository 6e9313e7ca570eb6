// Surroundings that are not as they should be: what a run then leaves.
#include <unistd.h>

#include <utility>

#include "tests/support/scenarios.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class Situations : public ProgramTest, public testing::WithParamInterface<Scenario> {
 protected:
  /// Runs the command as an ordinary user, who is no owner of anything here.
  [[nodiscard]] Outcome runasother() const { return ProgramTest::runasother({}, GetParam().words); }
};

TEST_P(Situations, AFolderThatMayNotBeWrittenKeepsItsFiles) {
  for (const auto& [name, text] : GetParam().before) write(folder / name, text);
  fs::permissions(folder / "a", fs::perms{0444});
  fs::permissions(folder, fs::perms{0555});
  const std::string name = GetParam().inplace() ? "a" : "a_tmp";
  EXPECT_EQ(runasother(), (Outcome{0, "Cannot open file " + name + " for output.\n"}));
  fs::permissions(folder, fs::perms{0755});
  EXPECT_EQ(filesin(folder), GetParam().before);
}

TEST_P(Situations, AFileThatMayNotBeWrittenIsReplacedInAFolderThatMay) {
  for (const auto& [name, text] : GetParam().before) write(folder / name, text);
  fs::permissions(folder / "a", fs::perms{0444});
  fs::permissions(folder, fs::perms{0777});
  if (GetParam().inplace()) {
    EXPECT_EQ(runasother(), (Outcome{0, "Cannot open file a for output.\n"}));
    EXPECT_EQ(filesin(folder), GetParam().before);
  } else {
    EXPECT_EQ(runasother(), (Outcome{1, ""}));
    EXPECT_EQ(contents(folder / "a"), GetParam().result);
    EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms{0444});
  }
}

TEST_P(Situations, AFileThatMayNotBeReadIsReported) {
  for (const auto& [name, text] : GetParam().before) write(folder / name, text);
  const std::string name = GetParam().words[0] == "merge" ? "s" : "a";
  fs::permissions(folder / name, fs::perms{0});
  fs::permissions(folder, fs::perms{0777});
  EXPECT_EQ(runasother(), (Outcome{0, "Cannot open file " + name + " for input.\n"}));
  fs::permissions(folder / name, fs::perms{0644});
  EXPECT_EQ(filesin(folder), GetParam().before);
}

INSTANTIATE_TEST_SUITE_P(Command, Situations, testing::ValuesIn(scenarios()), nameof);

}  // namespace

}  // namespace tolvane::test
