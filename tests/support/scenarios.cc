#include "tests/support/scenarios.h"

#include <sys/xattr.h>

#include <ostream>

#include "tests/support/accesslist.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

const std::string platform = "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~";

}  // namespace

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

std::vector<Scenario> scenarios() {
  const std::string old = "[ConfigFile]\nVersion=5.44\n\n" + platform + "5.44\n";
  const std::string current = "[ConfigFile]\nVersion=5.45\n\n" + platform + "5.45\n";
  const std::string database = "\n[Datasets]\nDataSet_1=FDBMS,fdbms,,0,P,0,0\n";
  const std::string system = "[ConfigFile]\nFileType=Configuration 5.44\n" + platform + "5.44\n";
  const Files legacy = filesof("a", "old\n", "s", system, "n", "[ConfigFile]\nFileType=Network\n");
  const std::vector<std::string> set = {"setparameter", "a", "[config]", "k", "1"};
  return {
      {"Update",             {"update", "a"},          {{"a", old}, {"a_544", "older\n"}},                current       },
      {"Fdbms",              {"fdbms", "a"},           {{"a", old}, {"a_tmp", "stale\n"}},                old + database},
      {"Merge",              {"merge", "a", "s", "n"}, legacy,                                            current       },
      {"SetParameter",       set,                      {{"a", old}},                                      old + "k=1\n" },
      {"SetParameterToLess", set,                      {{"a", old + "k=" + std::string(40, 'x') + "\n"}}, old + "k=1\n" },
  };
}

std::string nameof(const testing::TestParamInfo<Scenario>& scenario) { return scenario.param.name; }

void ScenarioTest::SetUp() {
  if (sanitized) GTEST_SKIP() << "the sanitizers bear neither a tracer nor another C library";
}

void ScenarioTest::prepare() const {
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
  for (const auto& [name, text] : GetParam().before) {
    write(folder / name, text);
    fs::permissions(folder / name, fs::perms{0600});
  }
  (void)setlist(folder / "a", accesslist, onemoreuser);
  (void)setxattr((folder / "a").c_str(), "user.tolvane", "test", 4, 0);
}

void ScenarioTest::expectprivate(const std::string& what) const {
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    const auto mode = static_cast<unsigned>(entry.status().permissions());
    const unsigned open = listof(entry.path()) == onemoreuser ? 0040 : 0;
    EXPECT_EQ(mode & 0077U, open) << what << ": " << entry.path();
  }
}

void ScenarioTest::expectuntouched(const std::string& what) const {
  Files expected = GetParam().before;
  const Files actual = filesin(folder);
  if (!actual.contains("a_tmp")) expected.erase("a_tmp");
  EXPECT_EQ(actual, expected) << what;
}

void ScenarioTest::expectdone(const std::string& what) const {
  EXPECT_EQ(filesin(folder).at("a"), GetParam().result) << what;
}

void ScenarioTest::expectmoment(const std::string& what) const {
  const Scenario& scenario = GetParam();
  Files files = filesin(folder);
  ASSERT_TRUE(files.contains("a")) << what;
  if (files.at("a") == scenario.result) {
    EXPECT_EQ(files, after()) << what;
    return;
  }
  EXPECT_EQ(files.at("a"), scenario.old()) << what;
  const auto temporary = files.find("a_tmp");
  const bool saved = temporary != files.end() && temporary->second == scenario.result;
  if (const auto backup = files.find("a_544"); backup != files.end() && backup->second != "older\n") {
    EXPECT_TRUE(saved) << what;
    EXPECT_EQ(backup->second, scenario.old()) << what;
  } else {
    EXPECT_TRUE(saved || scenario.words[0] != "update" || backup != files.end()) << what;
  }
  if (temporary == files.end() || temporary->second == "stale\n") return;
  EXPECT_TRUE(scenario.result.starts_with(temporary->second)) << what << ": " << temporary->second;
}

void ScenarioTest::expectnextrunworks(const std::string& what) const {
  EXPECT_EQ(run(GetParam().words), (Outcome{1, ""})) << what;
  EXPECT_EQ(filesin(folder), after()) << what;
}

Files ScenarioTest::after() {
  Files files = GetParam().before;
  files.erase("a_tmp");
  if (GetParam().words[0] == "update") files["a_544"] = GetParam().old();
  files["a"] = GetParam().result;
  return files;
}

}  // namespace tolvane::test
