// The commands that write, each with files to run it on and what it must leave: what the tests on faults share.
#pragma once

#include <string>
#include <vector>

#include "tests/support/program.h"

namespace tolvane::test {

/// A command on the file "a", the files before it, and what "a" holds after a run without a fault.
struct Scenario {
  std::string name;
  std::vector<std::string> words;
  Files before;
  std::string result;

  /// True when the command writes straight over its file.
  [[nodiscard]] bool inplace() const { return words[0] == "setparameter"; }
  [[nodiscard]] const std::string& old() const { return before.at("a"); }
};

void PrintTo(const Scenario& scenario, std::ostream* out);

/// One scenario or more for each command that writes.
std::vector<Scenario> scenarios();

/// A test on each of them, of the release program: the sanitizers bear neither a tracer nor another C library.
class ScenarioTest : public ProgramTest, public testing::WithParamInterface<Scenario> {
 protected:
  void SetUp() override;

  /// Puts the scenario's files, and only them, into the folder. They are their owner's alone, but for one more user in
  /// the access list of "a", which has one more extended attribute, too; both where the file system has such things.
  void prepare() const;

  /// Nobody else can read any of the files.
  void expectprivate(const std::string& what) const;

  /// Nothing has changed, but that a stale temporary file may be gone.
  void expectuntouched(const std::string& what) const;

  /// The file has the new contents.
  void expectdone(const std::string& what) const;

  /// What stands there is one of the moments of a run that replaces the file: the file is there, old or new, and
  /// nothing is lost.
  void expectmoment(const std::string& what) const;

  /// The next run leaves what a run without a fault leaves.
  void expectnextrunworks(const std::string& what) const;

  /// The files after a run without a fault.
  [[nodiscard]] static Files after();
};

std::string nameof(const testing::TestParamInfo<Scenario>& scenario);

}  // namespace tolvane::test
