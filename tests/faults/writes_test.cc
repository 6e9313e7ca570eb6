// Writes that take less than they are asked to, and disks that are full after any number of bytes.
#include "tests/support/scenarios.h"

namespace tolvane::test {

namespace {

class WriteFaults : public ScenarioTest {
 protected:
  [[nodiscard]] Outcome runshort(const std::string& most, const std::string& room = "") const {
    std::vector<std::string> command{"/usr/bin/env", "LD_PRELOAD=" TOLVANE_SHORT_WRITE, "SHORT_WRITE=" + most};
    if (!room.empty()) command.push_back("SHORT_WRITE_ROOM=" + room);
    return runby(command, GetParam().words);
  }
};

TEST_P(WriteFaults, TakingFewerBytesAreWrittenOn) {
  for (const char* most : {"1", "7", "half"}) {
    prepare();
    EXPECT_EQ(runshort(most), (Outcome{1, ""})) << most;
    EXPECT_EQ(contents(folder / "a"), GetParam().result) << most;
  }
}

TEST_P(WriteFaults, AfterAnyNumberOfBytesKeepTheFile) {
  const std::size_t size = GetParam().result.size();
  for (std::size_t room = 0; room < size; ++room) {
    for (const char* most : {"5", "10000"}) {
      const std::string fault = "room for " + std::to_string(room) + " bytes, " + most + " at once";
      prepare();
      EXPECT_EQ(runshort(most, std::to_string(room)), (Outcome{0, "Error writing output file\n"})) << fault;
      expectuntouched(fault);
      EXPECT_FALSE(filesin(folder).contains("a_tmp")) << fault;
    }
  }
  prepare();
  EXPECT_EQ(runshort("10000", std::to_string(size)), (Outcome{1, ""}));
  RecordProperty("faults", static_cast<int>(size) * 2);
}

INSTANTIATE_TEST_SUITE_P(Command, WriteFaults, testing::ValuesIn(scenarios()), nameof);

}  // namespace

}  // namespace tolvane::test
