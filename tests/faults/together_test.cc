// Concurrent runs leave the same files as the same runs one after the other, in some order.
#include <csignal>
#include <cstdlib>
#include <random>

#include "tests/support/concurrent.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class Together : public ConcurrentTest {
 protected:
  /// Starts each run after 1 to 6 ms and waits for all. If `victim` is set, kills that run after 1 to 10 ms.
  void runtogether(const std::vector<Task>& runs, std::optional<std::size_t> victim = {}) {
    std::vector<pid_t> children;
    for (const Task& run : runs) children.push_back(startat(later(1000 + random(5000)), run.words()));
    if (victim) {
      const timespec moment = later(1000 + random(9000));
      (void)clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &moment, nullptr);
      (void)kill(children[*victim], SIGKILL);
    }
    for (std::size_t place = 0; place < children.size(); ++place) {
      int status = 0;
      ASSERT_EQ(waitpid(children[place], &status, 0), children[place]);
      const bool ran = WIFEXITED(status) && WEXITSTATUS(status) == 1;
      EXPECT_TRUE(ran || place == victim) << runs[place].words()[0];
    }
  }

  [[nodiscard]] long random(long below) { return std::uniform_int_distribution<long>(0, below - 1)(generator_); }

  /// The runs of one or two commands, in turn.
  [[nodiscard]] static std::vector<Task> of(Command one, Command two, int count) {
    std::vector<Task> runs;
    for (int number = 1; number <= count; ++number) runs.push_back({number % 2 == 1 ? one : two, number});
    return runs;
  }

  /// Every command with itself and with every other, 2, 3 and 6 runs at once.
  void eachpair(int rounds) {
    int right = 0;
    for (const Command one : commands) {
      for (const Command two : commands) {
        if (two < one) continue;
        for (const int count : {2, 3, 6}) right += roundsof(of(one, two, count), rounds);
      }
    }
    RecordProperty("rounds", right);
  }

  [[nodiscard]] int roundsof(const std::vector<Task>& runs, int rounds) {
    const std::set<Files> expected = serial(runs);
    int right = 0;
    for (int round = 0; round < rounds; ++round) {
      prepare();
      runtogether(runs);
      const Files files = left();
      right += expected.contains(files) ? 1 : 0;
      EXPECT_TRUE(expected.contains(files)) << runs[0].words()[0] << " and " << runs[1].words()[0] << ", "
                                            << runs.size() << " runs, left " << testing::PrintToString(files);
    }
    if (std::getenv("TOLVANE_SHOW_ROUNDS") != nullptr) {
      std::printf("%-12s %-12s %zu runs: %d of %d right\n", runs[0].words()[0].c_str(), runs[1].words()[0].c_str(),
                  runs.size(), right, rounds);
    }
    return right;
  }

  /// Three runs, of which one is killed: as if it had been there or not, and the others do all of their work.
  void eachkilled(int rounds) {
    for (const Command killed : {Command::update, Command::fdbms, Command::merge}) {
      for (const Command other : commands) {
        for (int round = 0; round < rounds; ++round) {
          std::vector<Task> runs = of(other, other, 3);
          runs[0].command = killed;
          prepare();
          runtogether(runs, 0);
          expectwithorwithout(runs);
        }
      }
    }
  }

 private:
  /// What stands there is what the runs leave with or without the first one, but for what a killed run leaves.
  void expectwithorwithout(const std::vector<Task>& runs) const {
    std::set<Files> expected = serial(runs);
    const std::set<Files> without = serial({runs.begin() + 1, runs.end()});
    expected.insert(without.begin(), without.end());
    Files files = left();
    files.erase("a_tmp");
    // The backup of an update that was killed before its rename is a second name of the file.
    const bool early = files.contains("a_544") && !expected.contains(files);
    if (early) {
      EXPECT_TRUE(files.at("a_544").starts_with("[ConfigFile]\nVersion=5.44\n"));
      files.erase("a_544");
    }
    EXPECT_TRUE(expected.contains(files)) << "killed " << runs[0].words()[0] << " and " << runs[1].words()[0]
                                          << " left " << testing::PrintToString(left());
  }

  std::mt19937 generator_{1};
};

TEST_P(Together, ReferenceMatchesSequentialRuns) {
  for (const Command one : commands) {
    for (const Command two : commands) {
      const std::vector<Task> runs = of(one, two, 2);
      State state;
      prepare();
      for (const Task& each : runs) {
        EXPECT_EQ(run(each.words()), (Outcome{1, ""}));
        each.apply(state);
      }
      EXPECT_EQ(left(), state.files()) << runs[0].words()[0] << ", then " << runs[1].words()[0];
    }
  }
}

TEST_P(Together, ConcurrentRunsMatchASequentialOrder) { eachpair(4); }

TEST_P(Together, AKilledRunDoesNotStopTheOthers) { eachkilled(4); }

TEST_P(Together, RunsUnderOneWrapperMatchASequentialOrder) {
  for (const Command one : commands) {
    for (const Command two : commands) {
      if (two < one) continue;
      for (int round = 0; round < 5; ++round) {
        const std::vector<Task> runs = of(one, two, 4);
        prepare();
        std::string script = "flock 9\n";
        for (const Task& each : runs) {
          script += TOLVANE_PROGRAM;
          for (const std::string& word : each.words()) script += " '" + word + "'";
          script += " 2>&1 &\n";
        }
        EXPECT_EQ(spawn({"/bin/sh", "-c", "exec 9<.; " + script + "wait"}).printed.find("Cannot"), std::string::npos);
        EXPECT_TRUE(serial(runs).contains(left())) << testing::PrintToString(left());
      }
    }
  }
}

TEST_P(Together, RunsThatCreateTheFileUnderOneWrapperTakeTurns) {
  for (int round = 0; round < 20; ++round) {
    prepare();
    fs::remove(folder / "a");
    const std::string merge = std::string(TOLVANE_PROGRAM) + " merge a legacy/s legacy/n 2>&1 &\n";
    const Outcome outcome = spawn({"/bin/sh", "-c", "exec 9<.; flock 9\n" + merge + merge + merge + merge + "wait"});
    EXPECT_EQ(outcome.printed.find("Cannot"), std::string::npos) << outcome.printed;
    EXPECT_EQ(left(), (State{.current = true}.files()));
  }
}

// The second name is a link in another directory: the directories are not the same, but the file is.
TEST_P(Together, RunsOnOneFileUnderTwoNamesTakeTurns) {
  for (const bool symbolic : {true, false}) {
    for (int round = 0; round < 30; ++round) {
      prepare();
      fs::create_directory(folder / "other");
      if (symbolic) {
        fs::create_symlink("../a", folder / "other" / "a");
      } else {
        fs::create_hard_link(folder / "a", folder / "other" / "a");
      }
      std::vector<pid_t> children;
      for (int number = 1; number <= 4; ++number) {
        const std::string name = number % 2 == 0 ? "a" : "other/a";
        children.push_back(startat(later(1000), Task{Command::setparameter, number}.words(name)));
      }
      for (const pid_t child : children) ASSERT_EQ(waitpid(child, nullptr, 0), child);
      const std::string text = contents(folder / "a");
      for (int number = 1; number <= 4; ++number) {
        EXPECT_NE(text.find(Task{Command::setparameter, number}.key()), std::string::npos) << text;
      }
      EXPECT_EQ(text.size(), State{}.text().size() + 4 * 5);
      EXPECT_EQ(contents(folder / "other" / "a"), text);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(On, Together, testing::Values(disk, memory), nameofdisk);

/// Minutes long. TOLVANE_ROUNDS is the number of rounds of each combination.
class HeavyTogether : public Together {
 protected:
  [[nodiscard]] static int rounds() {
    const char* const wanted = std::getenv("TOLVANE_ROUNDS");
    if (wanted != nullptr) return std::atoi(wanted);
    return sanitized ? 10 : 40;  // the sanitizers make every start slow
  }
};

TEST_P(HeavyTogether, ConcurrentRunsMatchASequentialOrder) { eachpair(rounds()); }

TEST_P(HeavyTogether, AKilledRunDoesNotStopTheOthers) { eachkilled(2 * rounds()); }

INSTANTIATE_TEST_SUITE_P(On, HeavyTogether, testing::Values(disk, memory), nameofdisk);

}  // namespace

}  // namespace tolvane::test
