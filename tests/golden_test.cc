// The golden cases: each folder golden/<version>/<case>/ holds a command, the files before it, and what must stand
// afterwards: the files, what is printed and the exit status, byte for byte.
#include "tests/support/golden.h"

#include <algorithm>
#include <cctype>
#include <set>

#include "document/versions.h"
#include "tests/support/program.h"
#include "tests/support/valgrind.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

std::string printable(const testing::TestParamInfo<fs::path>& info) {
  std::string name = (*std::prev(info.param.end(), 2)).string() + "_" + info.param.filename().string();
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

class Golden : public ProgramTest, public testing::WithParamInterface<fs::path> {
 protected:
  /// Runs the case, the program by another command line.
  void expectleft(const std::vector<std::string>& by) const;
};

void Golden::expectleft(const std::vector<std::string>& by) const {
  const fs::path& parts = GetParam();
  for (const auto& [name, text] : filesin(parts / "before")) write(folder / name, text);
  EXPECT_EQ(runby(by, goldenwords(parts)),
            (Outcome{std::stoi(contents(parts / "status")), contents(parts / "stdout")}));

  const Files expected = filesin(parts / "after");
  const Files actual = filesin(folder);
  std::set<std::string> names;
  for (const auto& [name, text] : expected) names.insert(name);
  for (const auto& [name, text] : actual) names.insert(name);
  for (const std::string& name : names) {
    ASSERT_TRUE(actual.contains(name)) << name << " is missing";
    ASSERT_TRUE(expected.contains(name)) << name << " should not be there";
    EXPECT_EQ(actual.at(name), expected.at(name)) << name;
  }
}

TEST_P(Golden, LeavesWhatItMust) {
  std::set<std::string> found;
  for (const fs::path& part : subfolders(GetParam())) found.insert(part.filename());
  ASSERT_EQ(found, (std::set<std::string>{"after", "before", "command", "status", "stdout"}));
  expectleft({});
}

INSTANTIATE_TEST_SUITE_P(Case, Golden, testing::ValuesIn(goldencases()), printable);

/// Minutes long.
class HeavyGolden : public Golden {};

TEST_P(HeavyGolden, IsCleanUnderValgrind) {
  if (sanitized) GTEST_SKIP() << "the sanitizers bear no other tool";
  const Valgrind valgrind(folder.string() + ".valgrind");
  expectleft(valgrind.command());
  EXPECT_EQ(valgrind.findings(), "");
}

INSTANTIATE_TEST_SUITE_P(Case, HeavyGolden, testing::ValuesIn(goldencases()), printable);

TEST(GoldenFolders, AreThereForEveryVersionAndForNothingUnknown) {
  std::set<std::string> expected{"commands", "unknown", "merge-unknown"};
  for (const std::string_view version : sVersions) {
    expected.emplace(version);
    if (!versionolder("3.13", version)) continue;
    expected.insert("merge-" + std::string(version));  // a version of the legacy layout
  }
  std::set<std::string> actual;
  for (const fs::path& folder : subfolders(golden)) {
    actual.insert(folder.filename());
    EXPECT_FALSE(subfolders(folder).empty()) << folder << " holds no case";
  }
  EXPECT_EQ(actual, expected);
}

}  // namespace

}  // namespace tolvane::test
