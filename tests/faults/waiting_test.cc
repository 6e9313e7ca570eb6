// Runs that wait for a lock, and those that must not: their wrapper holds the lock for them.
#include <algorithm>
#include <csignal>
#include <ctime>

#include "tests/support/concurrent.h"
#include "tests/support/locker.h"

namespace tolvane::test {

namespace {

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
    Task{Command::update, 1}.apply(state);
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
  Task{Command::update, 1}.apply(state);
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
