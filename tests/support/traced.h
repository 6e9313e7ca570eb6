// Runs under strace: their system calls, and faults in them.
#pragma once

#include <sstream>

#include "tests/support/scenarios.h"

namespace tolvane::test {

/// A system call of a run: its name, how many of that name came before it, counted from 1, and its line in the trace.
struct Call {
  std::string name;
  int number = 0;
  std::string line = {};
  bool operator==(const Call&) const = default;

  [[nodiscard]] bool has(std::string_view text) const { return line.find(text) != std::string::npos; }

  [[nodiscard]] std::string with(const std::string& fault) const {
    return name + ":" + fault + ":when=" + std::to_string(number);
  }
};

using Options = std::vector<std::string>;

inline const Options wholewrites;
inline const Options shortwrites = {"-E", "LD_PRELOAD=" TOLVANE_SHORT_WRITE, "-E", "SHORT_WRITE=half"};

/// A test on each scenario, traced.
class TracedTest : public ScenarioTest {
 protected:
  TracedTest() : log_(folder.string() + ".strace") {}
  ~TracedTest() override { std::filesystem::remove(log_); }

  /// Runs the scenario's command with those writes and options of strace.
  [[nodiscard]] Outcome trace(const Options& writes, const Options& options) const {
    std::vector<std::string> command{"/usr/bin/strace", "-qq", "-o", log_};
    command.insert(command.end(), writes.begin(), writes.end());
    command.insert(command.end(), options.begin(), options.end());
    return runby(command, GetParam().words);
  }

  /// The system calls of a run without a fault, from the one that opens the directory to lock it to the end of the
  /// process.
  [[nodiscard]] std::vector<Call> calls(const Options& writes, const Options& options = {}) const {
    prepare();
    EXPECT_EQ(trace(writes, options), (Outcome{1, ""}));
    EXPECT_EQ(contents(folder / "a"), GetParam().result);
    std::map<std::string, int> counts;
    std::vector<Call> found;
    bool begun = false;
    std::istringstream lines(contents(log_));
    for (std::string line; std::getline(lines, line);) {
      const std::string name = line.substr(0, line.find('('));
      if (name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") != std::string::npos) continue;
      const int number = ++counts[name];
      begun = begun || (name == "openat" && line.find("\"./\"") != std::string::npos);
      if (begun && name != "brk") found.push_back({name, number, line});
    }
    EXPECT_GT(found.size(), 12U);
    if (!found.empty()) {
      EXPECT_EQ(found.back().name, "exit_group");
    }
    return found;
  }

 private:
  std::string log_;
};

}  // namespace tolvane::test
