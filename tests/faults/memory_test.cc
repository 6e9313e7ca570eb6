// Memory that cannot be had, at each allocation of a run: a message, every file as it was, and nothing leaked.
#include <algorithm>

#include "tests/support/scenarios.h"
#include "tests/support/valgrind.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

/// The scenarios, and the examples, which meet every step of a ladder.
std::vector<Scenario> withexamples() {
  const auto example = [](const char* name) { return contents(fs::path(TOLVANE_SOURCE) / "examples" / name); };
  const Files legacy = filesof("a", "old\n", "s", example("legacy/config.def"), "n", example("legacy/network.def"));
  std::vector<Scenario> all = scenarios();
  all.push_back(Scenario{
      "UpdateExample", {"update", "a"},
       filesof("a", example("server-3.11.qpx")), ""
  });
  all.push_back(Scenario{
      "MergeExample", {"merge", "a", "s", "n"},
       legacy, ""
  });
  return all;
}

class MemoryFaults : public ScenarioTest {
 protected:
  MemoryFaults() : count_(folder.string() + ".count") {}
  ~MemoryFaults() override { fs::remove(count_); }

  /// Runs the command with that allocation failing, none for 0, by another command line.
  [[nodiscard]] Outcome runfailing(int number, const std::vector<std::string>& by = {}) const {
    prepare();
    std::vector<std::string> command{"/usr/bin/env", "LD_PRELOAD=" TOLVANE_FAILING_MALLOC,
                                     "FAILING_MALLOC=" + std::to_string(number), "COUNTING_MALLOC=" + count_};
    command.insert(command.end(), by.begin(), by.end());
    return runby(command, GetParam().words);
  }

  /// The number of allocations of a run that all succeed.
  [[nodiscard]] int allocations() const {
    EXPECT_EQ(runfailing(0).status, 1);
    return std::stoi(contents(count_));
  }

  void expectnoleak(int number) const {
    const Valgrind valgrind(folder.string() + ".valgrind");
    const Outcome outcome = runfailing(number);
    EXPECT_EQ(runfailing(number, valgrind.command()), outcome) << number;
    EXPECT_EQ(valgrind.findings(), "") << number;
  }

 private:
  std::string count_;
};

TEST_P(MemoryFaults, AreReportedWithTheFilesUntouched) {
  const int count = allocations();
  const Outcome whole = runfailing(0);
  const Files after = filesin(folder);
  int failed = 0;
  for (int number = 1; number <= count; ++number) {
    const Outcome outcome = runfailing(number);
    if (outcome == whole) {
      // A library does without a buffer of its own.
      EXPECT_EQ(filesin(folder), after) << number;
      continue;
    }
    ++failed;
    EXPECT_EQ(outcome.status, 0) << number;
    EXPECT_TRUE(outcome.printed.ends_with("Insufficient memory\n")) << number << ": " << outcome.printed;
    EXPECT_EQ(filesin(folder), GetParam().before) << number;
  }
  EXPECT_GT(failed, 4);
  EXPECT_LE(count - failed, 5) << "one for each file read, one for what is printed, one for exceptions";
  RecordProperty("faults", failed);
  RecordProperty("withouteffect", count - failed);
}

TEST_P(MemoryFaults, LeakNothing) {
  expectnoleak(0);
  const int count = allocations();
  expectnoleak(count / 2);
  expectnoleak(count);
}

/// Runs within limits of the shell's `ulimit`.
class MemoryLimits : public ScenarioTest {
 protected:
  [[nodiscard]] Outcome runwithin(const std::string& limit) const {
    prepare();
    return ScenarioTest::runwithin(limit, GetParam().words);
  }
};

// Below the first size the loader cannot load the program.
TEST_P(MemoryLimits, OfAddressSpaceAreReportedWithTheFilesUntouched) {
  int size = 2000;
  while (ScenarioTest::runwithin("-v " + std::to_string(size), {"install", "a"}).status != 1)
    ASSERT_LT(size += 8, 4000);
  EXPECT_LT(size, 3000);
  int refused = 0;
  for (Outcome outcome{0, ""}; outcome.status == 0; size += 8) {
    ASSERT_LT(size, 5000);
    outcome = runwithin("-v " + std::to_string(size));
    if (outcome.status == 1) {
      EXPECT_EQ(filesin(folder), after()) << size;
      continue;
    }
    EXPECT_EQ(outcome, (Outcome{0, "Insufficient memory\n"})) << size;
    EXPECT_EQ(filesin(folder), GetParam().before) << size;
    ++refused;
  }
  EXPECT_GT(refused, 10);
}

TEST_P(MemoryLimits, OfTheStackAreNone) {
  EXPECT_EQ(runwithin("-s 32"), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), after());
}

INSTANTIATE_TEST_SUITE_P(Command, MemoryLimits, testing::ValuesIn(scenarios()), nameof);

INSTANTIATE_TEST_SUITE_P(Command, MemoryFaults, testing::ValuesIn(withexamples()), nameof);

/// Minutes long.
class HeavyMemoryFaults : public MemoryFaults {};

TEST_P(HeavyMemoryFaults, LeakNothing) {
  const int count = allocations();
  const int stride = count > 100 ? 16 : 1;
  for (int number = 1; number <= count; number += stride) expectnoleak(number);
}

INSTANTIATE_TEST_SUITE_P(Command, HeavyMemoryFaults, testing::ValuesIn(withexamples()), nameof);

}  // namespace

}  // namespace tolvane::test
