// Nothing is lost, wherever the run is killed.
//
// A command is killed before each system call that it makes from its lock on, which is after the one before, and ended
// by signals that can wait. It is killed once more with writes that take only half of what they are asked to.
#include <algorithm>
#include <csignal>

#include "tests/support/traced.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class DeadlyFaults : public TracedTest {
 protected:
  /// What stands in a file that is written straight over, by how far the run came: all of the old contents up to its
  /// first write, all of the new ones after its last, the new ones over the old ones between them.
  void expectwrittenover(const Call& next, const std::vector<Call>& calls, const std::string& fault) const {
    const std::string& old = GetParam().old();
    const std::string& result = GetParam().result;
    const std::string text = contents(folder / "a");
    const auto named = [&](const char* name) {
      return std::find_if(calls.begin(), calls.end(), [&](const Call& call) { return call.name == name; });
    };
    const auto place = std::find(calls.begin(), calls.end(), next);
    if (place <= named("write")) {
      EXPECT_EQ(text, old) << fault;
    } else if (place > named("ftruncate")) {
      EXPECT_EQ(text, result) << fault;
    } else {
      const auto same = static_cast<std::size_t>(
          std::mismatch(text.begin(), text.end(), result.begin(), result.end()).first - text.begin());
      EXPECT_EQ(text.substr(same), same < old.size() ? old.substr(same) : "") << fault;
      EXPECT_TRUE(next.name == "write" || same == result.size()) << fault;
    }
  }

  void killateach(const Options& writes) const {
    int kills = 0;
    const std::vector<Call> all = calls(writes);
    for (const Call& call : all) {
      const std::string fault = call.with("signal=SIGKILL");
      prepare();
      EXPECT_EQ(trace(writes, {"--inject=" + fault}).status, -SIGKILL) << fault;
      ++kills;
      expectprivate(fault);
      if (GetParam().inplace()) {
        expectwrittenover(call, all, fault);
      } else {
        expectmoment(fault);
        expectnextrunworks(fault);
      }
    }
    RecordProperty("kills", kills);
  }

  /// Ends the run by a signal that can wait, sent in each call.
  void endateach(const std::string& signal, int number) const {
    int ends = 0;
    for (const Call& call : calls(wholewrites)) {
      if (call.name == "exit_group") continue;
      const std::string fault = call.with("signal=" + signal);
      prepare();
      EXPECT_EQ(trace(wholewrites, {"--inject=" + fault}).status, -number) << fault;
      ++ends;
      const Files files = filesin(folder);
      if (files.at("a") == GetParam().result) {
        EXPECT_EQ(files, after()) << fault;
      } else {
        expectuntouched(fault);
      }
    }
    RecordProperty("ends", ends);
  }
};

TEST_P(DeadlyFaults, OfBeingKilledLoseNothing) { killateach(wholewrites); }

TEST_P(DeadlyFaults, OfBeingKilledBetweenShortWritesLoseNothing) { killateach(shortwrites); }

TEST_P(DeadlyFaults, OfSignalsThatCanWaitLeaveTheFilesInOrder) {
  const std::map<std::string, int> signals{
      {"SIGHUP",  SIGHUP },
      {"SIGINT",  SIGINT },
      {"SIGQUIT", SIGQUIT},
      {"SIGPIPE", SIGPIPE},
      {"SIGTERM", SIGTERM}
  };
  for (const auto& [signal, number] : signals) endateach(signal, number);
}

// Where no link can be made there is a moment without the file.
TEST_P(DeadlyFaults, OfBeingKilledWithoutLinksLoseNothing) {
  if (GetParam().words[0] != "update") return;
  const std::string nolinks = "--inject=linkat:error=EPERM";
  int missing = 0;
  for (const Call& call : calls(wholewrites, {nolinks})) {
    const std::string fault = call.with("signal=SIGKILL");
    prepare();
    const bool link = call.name == "linkat";
    EXPECT_EQ(trace(wholewrites, link ? Options{"--inject=" + fault} : Options{nolinks, "--inject=" + fault}).status,
              -SIGKILL)
        << fault;
    expectprivate(fault);
    if (fs::exists(folder / "a")) {
      expectmoment(fault);
    } else {
      ++missing;
      const Files files = filesin(folder);
      EXPECT_EQ(files.at("a_544"), GetParam().old()) << fault;
      EXPECT_EQ(files.at("a_tmp"), GetParam().result) << fault;
      fs::rename(folder / "a_544", folder / "a");
    }
    expectnextrunworks(fault);
  }
  EXPECT_EQ(missing, 1);
}

INSTANTIATE_TEST_SUITE_P(Command, DeadlyFaults, testing::ValuesIn(scenarios()), nameof);

}  // namespace

}  // namespace tolvane::test
