// Concurrent runs leave the same files as the same runs one after the other, in some order. A reference implementation
// of what the commands do to these files tells what each order leaves.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <numeric>
#include <optional>
#include <random>
#include <set>

#include "tests/support/locker.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

/// The files that the commands work on, by what tells one state of them from another.
struct State {
  bool current = false;      // the version is 5.45 and not 5.44
  std::string entries = {};  // that setparameter added
  bool database = false;
  std::optional<std::string> backup = {};  // contents

  [[nodiscard]] std::string text() const {
    const std::string version = current ? "5.45" : "5.44";
    return "[ConfigFile]\nVersion=" + version + "\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~" + version + "\n" +
           entries + (database ? "\n[Datasets]\nDataSet_1=FDBMS,fdbms,,0,P,0,0\n" : "");
  }

  [[nodiscard]] Files files() const {
    Files files = {
        {"a", text()}
    };
    if (backup) files["a_544"] = *backup;
    return files;
  }
};

enum class Command { update, fdbms, merge, setparameter };

constexpr Command commands[] = {Command::update, Command::fdbms, Command::merge, Command::setparameter};

/// A command, and which of the runs it is.
struct Step {
  Command command;
  int number;

  [[nodiscard]] std::string key() const { return std::string("k").append(std::to_string(number)); }

  [[nodiscard]] std::vector<std::string> words(const std::string& file = "a") const {
    switch (command) {
      case Command::update:
        return {"update", file};
      case Command::fdbms:
        return {"fdbms", file};
      case Command::merge:
        return {"merge", file, "legacy/s", "legacy/n"};
      default:
        return {"setparameter", file, "[config]", key(), "1"};
    }
  }

  void apply(State& state) const {
    switch (command) {
      case Command::update:
        if (!state.current) state.backup = state.text();
        state.current = true;
        break;
      case Command::fdbms:
        state.database = true;
        break;
      case Command::merge:
        state = {.current = true, .backup = state.backup};
        break;
      default:
        state.entries += key() + "=1\n";
    }
  }
};

/// What the runs leave, in every order.
std::set<Files> serial(const std::vector<Step>& runs) {
  std::vector<std::size_t> order(runs.size());
  std::iota(order.begin(), order.end(), 0);
  std::set<Files> results;
  do {
    State state;
    for (const std::size_t place : order) runs[place].apply(state);
    results.insert(state.files());
  } while (std::next_permutation(order.begin(), order.end()));
  return results;
}

/// The file systems: a disk, and one in memory.
const char* const disk = "";
const char* const memory = "/dev/shm";

class Together : public ProgramTest, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    if (*GetParam() == '\0') return;
    if (access(GetParam(), W_OK) != 0) GTEST_SKIP() << "there is no " << GetParam();
    std::string name = std::string(GetParam()) + "/tolvane-test-XXXXXX";
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    fs::remove(folder);
    folder = name;
  }

  void prepare() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
    fs::create_directory(folder / "legacy");
    write(folder / "legacy" / "s",
          "[ConfigFile]\nFileType=Configuration 5.44\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44\n");
    write(folder / "legacy" / "n", "[ConfigFile]\nFileType=Network\n");
    write(folder / "a", State{}.text());
  }

  [[nodiscard]] Files left() const {
    Files files = filesin(folder);
    files.erase("legacy");
    return files;
  }

  /// Starts the program at the given time.
  [[nodiscard]] pid_t startat(const timespec& moment, const std::vector<std::string>& words) const {
    std::vector<std::string> line{TOLVANE_PROGRAM};
    line.insert(line.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : line) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child != 0) return child;
    const bool there = chdir(folder.c_str()) == 0;
    const int null = open("/dev/null", O_WRONLY);
    (void)dup2(null, STDOUT_FILENO);
    (void)dup2(null, STDERR_FILENO);
    (void)clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &moment, nullptr);
    if (there) (void)execv(arguments[0], arguments.data());
    _exit(127);
  }

  /// That many microseconds from now.
  [[nodiscard]] static timespec later(long microseconds) {
    timespec moment{};
    (void)clock_gettime(CLOCK_MONOTONIC, &moment);
    moment.tv_nsec += microseconds * 1000;
    moment.tv_sec += moment.tv_nsec / 1'000'000'000;
    moment.tv_nsec %= 1'000'000'000;
    return moment;
  }

  /// Starts each run after 1 to 6 ms and waits for all. If `victim` is set, kills that run after 1 to 10 ms.
  void runtogether(const std::vector<Step>& runs, std::optional<std::size_t> victim = {}) {
    std::vector<pid_t> children;
    for (const Step& run : runs) children.push_back(startat(later(1000 + random(5000)), run.words()));
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
  [[nodiscard]] static std::vector<Step> of(Command one, Command two, int count) {
    std::vector<Step> runs;
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

  [[nodiscard]] int roundsof(const std::vector<Step>& runs, int rounds) {
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
          const std::vector<Step> runs{
              {killed, 1},
              {other,  2},
              {other,  3}
          };
          prepare();
          runtogether(runs, 0);
          expectwithorwithout(runs);
        }
      }
    }
  }

 private:
  /// What stands there is what the runs leave with or without the first one, but for what a killed run leaves.
  void expectwithorwithout(const std::vector<Step>& runs) const {
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
      const std::vector<Step> runs = of(one, two, 2);
      State state;
      prepare();
      for (const Step& each : runs) {
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
        const std::vector<Step> runs = of(one, two, 4);
        prepare();
        std::string script = "flock 9\n";
        for (const Step& each : runs) {
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
        children.push_back(startat(later(1000), Step{Command::setparameter, number}.words(name)));
      }
      for (const pid_t child : children) ASSERT_EQ(waitpid(child, nullptr, 0), child);
      const std::string text = contents(folder / "a");
      for (int number = 1; number <= 4; ++number) {
        EXPECT_NE(text.find(Step{Command::setparameter, number}.key()), std::string::npos) << text;
      }
      EXPECT_EQ(text.size(), State{}.text().size() + 4 * 5);
      EXPECT_EQ(contents(folder / "other" / "a"), text);
    }
  }
}

std::string nameofdisk(const testing::TestParamInfo<const char*>& where) {
  return *where.param == '\0' ? "Disk" : "Memory";
}

INSTANTIATE_TEST_SUITE_P(On, Together, testing::Values(disk, memory), nameofdisk);

/// Minutes long. TOLVANE_ROUNDS is the number of rounds of each combination.
class HeavyTogether : public Together {
 protected:
  [[nodiscard]] static int rounds() {
    const char* const wanted = std::getenv("TOLVANE_ROUNDS");
#ifdef __SANITIZE_ADDRESS__
    constexpr int usual = 10;  // the sanitizers make every start slow
#else
    constexpr int usual = 40;
#endif
    return wanted == nullptr ? usual : std::atoi(wanted);
  }
};

TEST_P(HeavyTogether, ConcurrentRunsMatchASequentialOrder) { eachpair(rounds()); }

TEST_P(HeavyTogether, AKilledRunDoesNotStopTheOthers) { eachkilled(2 * rounds()); }

INSTANTIATE_TEST_SUITE_P(On, HeavyTogether, testing::Values(disk, memory), nameofdisk);

/// A run that waits for another one.
class Waiting : public ProgramTest {
 protected:
  Waiting() { write(folder / "a", State{}.text()); }

  /// Runs update under `flock` with these options.
  [[nodiscard]] Outcome below(const std::vector<std::string>& options) const {
    std::vector<std::string> line{"/usr/bin/flock"};
    line.insert(line.end(), options.begin(), options.end());
    return runby(line, {"update", "a"});
  }

  void expectupdated() const {
    State state;
    Step{Command::update, 1}.apply(state);
    EXPECT_EQ(filesin(folder), state.files());
  }

  static constexpr const char* refused = "Cannot open file a for output.\n";
  static constexpr const char* told = "tolvane: waiting for the lock on ./\n";
};

TEST_F(Waiting, ChangesNothingBeforeTheLockIsFree) {
  Locker other{folder, LOCK_EX, [this] { write(folder / "a", State{.entries = "k=2\n"}.text()); }};
  const pid_t releaser = fork();
  if (releaser == 0) {
    (void)usleep(300'000);
    EXPECT_EQ(filesin(folder), State{}.files());
    other.release();
    _exit(0);
  }
  other.leave();
  EXPECT_EQ(run({"update", "a"}), (Outcome{1, "", told}));
  (void)waitpid(releaser, nullptr, 0);
  EXPECT_EQ(contents(folder / "a_544"), State{.entries = "k=2\n"}.text()) << "read after the wait";
}

TEST_F(Waiting, DoesNotDeadlockUnderAWrapperThatHoldsTheLock) {
  EXPECT_EQ(below({"."}), (Outcome{1, ""}));
  expectupdated();
}

TEST_F(Waiting, DoesNotDeadlockUnderAWrapperThatHoldsTheFile) {
  EXPECT_EQ(below({"a"}), (Outcome{1, ""}));
  expectupdated();
}

TEST_F(Waiting, DoesNotDeadlockUnderAWrapperThatSharesTheLock) {
  EXPECT_EQ(below({"-s", "."}), (Outcome{1, ""}));
  expectupdated();
}

// The wrapped run has the file and wants the directory, the other one the other way round.
TEST_F(Waiting, DoesNotDeadlockBesideAWrapperThatHoldsTheFile) {
  const std::string program = TOLVANE_PROGRAM;
  const std::string script = "flock a sh -c 'sleep 0.3; " + program + " update a' &\n sleep 0.1; timeout 20 " +
                             program + " fdbms a; echo $?; wait";
  EXPECT_EQ(spawn({"/bin/sh", "-c", script}).printed, "1\n");
  State state;
  Step{Command::update, 1}.apply(state);
  state.database = true;
  EXPECT_EQ(contents(folder / "a"), state.text());
}

TEST_F(Waiting, EndsByASignal) {
  const Locker other{folder, LOCK_EX};
  EXPECT_EQ(runby({"/usr/bin/timeout", "--preserve-status", "-s", "TERM", "0.3"}, {"update", "a"}).status,
            128 + SIGTERM);
  EXPECT_EQ(filesin(folder), State{}.files());
}

/// A minute long each.
class HeavyWaiting : public Waiting {
 protected:
  void expectrefused(const Outcome& outcome, std::time_t begin, const char* file = "a") const {
    const std::time_t seconds = std::time(nullptr) - begin;
    EXPECT_GE(seconds, 59);
    EXPECT_LE(seconds, 80);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.printed, std::string("Cannot open file ") + file + " for output.\n");
    EXPECT_EQ(std::count(outcome.complained.begin(), outcome.complained.end(), '\n'), 1) << outcome.complained;
    EXPECT_EQ(filesin(folder), State{}.files());
  }
};

TEST_F(HeavyWaiting, TimesOut) {
  const Locker other{folder, LOCK_EX};
  const std::time_t begin = std::time(nullptr);
  expectrefused(run({"update", "a"}), begin);
}

TEST_F(HeavyWaiting, TimesOutForAFileToo) {
  const Locker other{folder / "a", LOCK_EX};
  const std::time_t begin = std::time(nullptr);
  expectrefused(run({"setparameter", "a", "[config]", "k", "1"}), begin);
}

TEST_F(HeavyWaiting, TimesOutUnderAWrapperThatClosesItsDescriptor) {
  const std::time_t begin = std::time(nullptr);
  expectrefused(below({"-o", "."}), begin);
}

}  // namespace

}  // namespace tolvane::test
