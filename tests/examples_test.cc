// The examples show everything: each step of a ladder changes something in the file that stands for it.
#include "ladder/ladder.h"
#include "legacy/convertnetwork.h"
#include "legacy/convertsystem.h"
#include "tests/support/program.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Examples : public StoreTest {
 protected:
  static void read(const std::string& name) {
    given(contents(std::filesystem::path(TOLVANE_SOURCE) / "examples" / name));
  }

  static void expectchangedalone(const std::string& name, std::span<const Step> steps) {
    for (const Step& step : steps) {
      read(name);
      const std::string before = lines();
      step.apply();
      EXPECT_NE(lines(), before) << name << ": step " << step.version;
    }
  }

  static void expectchangedinorder(const std::string& name, std::span<const Step> steps, std::string_view idle = "") {
    read(name);
    for (const Step& step : steps) {
      const std::string before = lines();
      step.apply();
      if (step.version == idle) continue;
      EXPECT_NE(lines(), before) << name << ": step " << step.version;
    }
  }
};

TEST_F(Examples, AreChangedByEveryStepAlone) {
  expectchangedalone("server-3.11.qpx", ladder);
  expectchangedalone("legacy/config.def", systemladder);
  expectchangedalone("legacy/network.def", networkladder);
}

TEST_F(Examples, AreChangedByEveryStepInTheirOrder) {
  // What step "5.0" repairs in a "3.11" file step "4.2" has repaired just before.
  expectchangedinorder("server-3.11.qpx", ladder, "5.0");
  expectchangedinorder("legacy/config.def", systemladder);
  expectchangedinorder("legacy/network.def", networkladder);
}

}  // namespace

}  // namespace tolvane::test
