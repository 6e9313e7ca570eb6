// Concurrent runs: a reference implementation of what the commands do to a few files, and processes that start at a
// given time.
#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <numeric>
#include <optional>
#include <set>

#include "tests/support/program.h"

namespace tolvane::test {

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
    Files files = filesof("a", text());
    if (backup) files["a_544"] = *backup;
    return files;
  }
};

enum class Command { update, fdbms, merge, setparameter };

inline constexpr Command commands[] = {Command::update, Command::fdbms, Command::merge, Command::setparameter};

/// A command, and which of the runs it is.
struct Task {
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
inline std::set<Files> serial(const std::vector<Task>& runs) {
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
inline const char* const disk = "";
inline const char* const memory = "/dev/shm";

/// Tests of runs on those files, on either file system.
class ConcurrentTest : public ProgramTest, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    if (*GetParam() == '\0') return;
    if (access(GetParam(), W_OK) != 0) GTEST_SKIP() << "there is no " << GetParam();
    std::string name = std::string(GetParam()) + "/tolvane-test-XXXXXX";
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    std::filesystem::remove(folder);
    folder = name;
  }

  void prepare() const {
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder))
      std::filesystem::remove_all(entry.path());
    std::filesystem::create_directory(folder / "legacy");
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
};

inline std::string nameofdisk(const testing::TestParamInfo<const char*>& where) {
  return *where.param == '\0' ? "Disk" : "Memory";
}

}  // namespace tolvane::test
