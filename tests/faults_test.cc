// Nothing is lost, whichever system call or allocation fails and wherever the run is killed.
//
// Every system call that a command makes on files from its first file on is failed once with each of several errors,
// and the run is killed before each of them, which is after the one before. strace does both.
#include <algorithm>
#include <csignal>
#include <sstream>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

/// A command, the files before it, and what its file holds after a run without a fault.
struct Scenario {
  std::string name;
  std::vector<std::string> words;
  Files before;
  std::string file;
  std::string result;
};

const std::string platform = "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~";

std::vector<Scenario> scenarios() {
  const std::string old = "[ConfigFile]\nVersion=5.44\n\n" + platform + "5.44\n";
  const std::string current = "[ConfigFile]\nVersion=5.45\n\n" + platform + "5.45\n";
  const std::string database = "\n[Datasets]\nDataSet_1=FDBMS,fdbms,,0,P,0,0\n";
  const std::string system = "[ConfigFile]\nFileType=Configuration 5.44\n" + platform + "5.44\n";
  return {
      {"Update",       {"update", "a"},                             {{"a", old}, {"a_544", "older\n"}}, "a", current       },
      {"Fdbms",        {"fdbms", "a"},                              {{"a", old}, {"a_tmp", "stale\n"}}, "a", old + database},
      {"Merge",
       {"merge", "a", "s", "n"},
       {{"a", "old\n"}, {"s", system}, {"n", "[ConfigFile]\nFileType=Network\n"}},
       "a",                                                                                                  current       },
      {"SetParameter", {"setparameter", "a", "[config]", "k", "1"}, {{"a", old}},                       "a", old + "k=1\n" },
  };
}

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

/// A system call of a run: its name and how many of that name came before it, counted from 1.
struct Call {
  std::string name;
  int number;
};

class Faults : public ProgramTest, public testing::WithParamInterface<Scenario> {
 protected:
  Faults() : log_(folder.string() + ".strace") {}
  ~Faults() override { fs::remove(log_); }

  void SetUp() override {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers bear neither a tracer nor another malloc";
#endif
  }

  /// Puts the scenario's files, and only them, into the folder.
  void prepare() const {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) fs::remove_all(entry.path());
    for (const auto& [name, text] : GetParam().before) write(folder / name, text);
  }

  [[nodiscard]] Outcome trace(std::vector<std::string> options) const {
    std::vector<std::string> command{"/usr/bin/strace", "-qq", "-o", log_};
    command.insert(command.end(), options.begin(), options.end());
    return runby(command, GetParam().words);
  }

  /// The system calls of a run without a fault, from the one that opens the first file on.
  [[nodiscard]] std::vector<Call> calls() const {
    prepare();
    EXPECT_EQ(trace({}), (Outcome{1, ""}));
    EXPECT_EQ(contents(folder / GetParam().file), GetParam().result);
    const std::string first = GetParam().words[0] == "merge" ? "\"s\"" : "\"a\"";
    std::map<std::string, int> counts;
    std::vector<Call> found;
    bool begun = false;
    std::istringstream lines(contents(log_));
    for (std::string line; std::getline(lines, line);) {
      const std::string name = line.substr(0, line.find('('));
      if (name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_") != std::string::npos) continue;
      const int number = ++counts[name];
      begun = begun || (name == "openat" && line.find(first) != std::string::npos);
      if (begun && name != "exit_group" && name != "brk") found.push_back({name, number});
    }
    EXPECT_GT(found.size(), 8U);
    return found;
  }

  /// Whatever stands under the known names is whole, and the old or the new contents are among it.
  void expectnothinglost(const std::string& what) const {
    const Scenario& scenario = GetParam();
    const std::string& old = scenario.before.at(scenario.file);
    const Files files = filesin(folder);
    bool kept = false;
    for (const auto& [name, text] : files) {
      const bool whole = text == old || text == scenario.result;
      kept = kept || whole;
      if (name == scenario.file) {
        EXPECT_TRUE(whole) << what << ": the file is neither the old nor the new one:\n" << text;
      }
    }
    EXPECT_TRUE(kept) << what;
    if (!files.contains(scenario.file)) {
      // Between the last two steps the new contents are whole under the temporary name.
      EXPECT_EQ(files.at(scenario.file + "_tmp"), scenario.result) << what;
    }
  }

  /// An administrator puts the file back if it is not there, and the next run does all of the work.
  void expectnextrunworks(const std::string& what) const {
    const Scenario& scenario = GetParam();
    const fs::path file = folder / scenario.file;
    if (!fs::exists(file)) fs::rename(file.string() + "_tmp", file);
    EXPECT_EQ(run(scenario.words), (Outcome{1, ""})) << what;
    EXPECT_EQ(contents(file), scenario.result) << what;
    EXPECT_FALSE(scenario.words[0] == "update" && !fs::exists(folder / "a_544")) << what;
  }

 private:
  std::string log_;
};

TEST_P(Faults, OfSystemCallsLoseNothing) {
  int faults = 0;
  for (const Call& call : calls()) {
    for (const char* error : {"ENOSPC", "EIO", "EACCES", "EROFS", "EINTR"}) {
      const std::string fault = call.name + ":error=" + error + ":when=" + std::to_string(call.number);
      prepare();
      const Outcome outcome = trace({"--inject=" + fault});
      ++faults;
      ASSERT_TRUE(outcome.status == 0 || outcome.status == 1) << fault << ": status " << outcome.status;
      expectnothinglost(fault);
      if (outcome.status == 1) continue;
      const bool known = outcome.printed == "Error writing output file\n" ||
                         (outcome.printed.starts_with("Cannot open file ") && outcome.printed.ends_with("put.\n"));
      EXPECT_TRUE(known) << fault << ": " << outcome.printed;
      // What is written straight over the file and then cannot be synced or closed stands there, whole.
      if (GetParam().words[0] == "setparameter") continue;
      EXPECT_EQ(contents(folder / GetParam().file), GetParam().before.at(GetParam().file)) << fault;
      EXPECT_FALSE(fs::exists(folder / (GetParam().file + "_tmp")) && outcome.printed.starts_with("Error")) << fault;
    }
  }
  EXPECT_GT(faults, 40);
}

TEST_P(Faults, OfBeingKilledLoseNothing) {
  // Written straight over, this file may be half old and half new while it is being written.
  const bool inplace = GetParam().words[0] == "setparameter";
  for (const Call& call : calls()) {
    if (inplace && call.name != "openat" && call.name != "read") continue;
    const std::string fault = call.name + ":signal=SIGKILL:when=" + std::to_string(call.number);
    prepare();
    EXPECT_EQ(trace({"--inject=" + fault}).status, -SIGKILL) << fault;
    expectnothinglost(fault);
    expectnextrunworks(fault);
  }
}

TEST_P(Faults, OfPowerFindTheFileSynced) {
  std::vector<std::string> order;
  for (const Call& call : calls()) {
    if (call.name == "write" || call.name == "fsync" || call.name == "rename") order.push_back(call.name);
  }
  if (GetParam().words[0] == "setparameter") {
    EXPECT_EQ(order, (std::vector<std::string>{"write", "fsync"}));
    return;
  }
  ASSERT_GE(order.size(), 4U);
  EXPECT_EQ(order[0], "write");
  EXPECT_EQ(order[1], "fsync") << "the data, before anything is renamed";
  EXPECT_EQ(order[2], "rename");
  EXPECT_EQ(order.back(), "fsync") << "the folder, after everything was renamed";
}

TEST_P(Faults, OfMemoryLoseNothing) {
  int failed = 0;
  for (int n = 1; n < 200; ++n) {
    prepare();
    const Outcome outcome =
        runby({"/usr/bin/env", "LD_PRELOAD=" TOLVANE_FAILING_MALLOC, "FAILING_MALLOC=" + std::to_string(n)},
              GetParam().words);
    if (outcome.status == 1) {
      EXPECT_EQ(contents(folder / GetParam().file), GetParam().result) << n;
    } else {
      ++failed;
      EXPECT_EQ(outcome, (Outcome{0, "Insufficient memory\n"})) << n;
      EXPECT_EQ(filesin(folder), GetParam().before) << n;
    }
  }
  EXPECT_GT(failed, 4);
}

std::string nameof(const testing::TestParamInfo<Scenario>& scenario) { return scenario.param.name; }

INSTANTIATE_TEST_SUITE_P(Command, Faults, testing::ValuesIn(scenarios()), nameof);

}  // namespace

}  // namespace tolvane::test
