// The files that script/bench measures with: as long as they are asked for, and converted whole, so that no figure is
// that of a run which ended early or of mappings that no step has seen.
#include <sstream>

#include "document/versions.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

int keptlines(const std::string& text) {
  std::istringstream stream(text);
  int count = 0;
  for (std::string line; std::getline(stream, line);) {
    if (line.find_first_not_of(" \t") != std::string::npos) ++count;
  }
  return count;
}

class HeavyBenchFiles : public ProgramTest {
 protected:
  [[nodiscard]] std::string generated(const std::string& family, int count) const {
    const Outcome outcome = spawn({TOLVANE_SOURCE "/bench/generate", family, std::to_string(count)});
    EXPECT_EQ(outcome.status, 0) << family;
    return outcome.printed;
  }

  /// The file that the command made of a family's.
  [[nodiscard]] std::string converted(const std::string& family, int count) const {
    const bool legacy = family.starts_with("legacy");
    write(folder / (legacy ? "network" : "a"), generated(family, count));
    if (legacy) write(folder / "system", generated("system", 0));
    const std::vector<std::string> words =
        legacy ? std::vector<std::string>{"merge", "a", "system", "network"} : std::vector<std::string>{"update", "a"};
    EXPECT_EQ(run(words).status, 1) << family;
    const std::string after = contents(folder / "a");
    EXPECT_NE(after.find("\nVersion=" + std::string(currentversion) + "\n"), std::string::npos) << family;
    return after;
  }
};

constexpr const char* families[] = {
    "mappings",        "subscripts",     "datasets",          "applications",
    "drives",          "servers",        "legacy-globals",    "legacy-subscripts",
    "legacy-routines", "legacy-servers", "legacy-namespaces", "legacy-databases",
};

TEST_F(HeavyBenchFiles, HaveExactlyTheLinesThatAreAskedFor) {
  for (const std::string order : {"realistic", "behind"}) {
    for (const int lines : {300, 1000, 3000, 10000}) EXPECT_EQ(keptlines(generated(order, lines)), lines) << order;
  }
}

TEST_F(HeavyBenchFiles, RealisticOnesAreConvertedWhole) {
  for (const int lines : {300, 3000}) {
    EXPECT_NE(generated("realistic", lines).find("=oddX"), std::string::npos);
    for (const std::string order : {"realistic", "behind"}) {
      EXPECT_EQ(converted(order, lines).find("=oddX"), std::string::npos)
          << lines << " lines, " << order << ": a mapping section was not reached";
    }
  }
}

TEST_F(HeavyBenchFiles, FamiliesGrowByTheEntriesThatAreAskedFor) {
  for (const std::string family : families) {
    const int entries = family == "subscripts" ? 40 : 20;  // a global mapping and one of its subscripts each
    EXPECT_EQ(keptlines(generated(family, 40)), keptlines(generated(family, 20)) + entries) << family;
    EXPECT_EQ(keptlines(generated(family + "-repeated", 20)), keptlines(generated(family, 20))) << family;
  }
}

TEST_F(HeavyBenchFiles, FamiliesAreConvertedWhole) {
  for (const std::string family : families) {
    const std::string after = converted(family, 20);
    EXPECT_EQ(after.find("=odd"), std::string::npos) << family << ": a dropped global is still mapped";
    EXPECT_FALSE(converted(family + "-repeated", 20).empty());
  }
}

}  // namespace

}  // namespace tolvane::test
