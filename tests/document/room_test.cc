// Memory for the lines of a file: what it spares, and that it is not more than they need.
#include "document/room.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <string>

#include "document/parse.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

rusage used() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage;
}

/// How often the process waits for a page while these bytes are parsed.
long faultsof(const std::string& bytes) {
  const long before = used().ru_minflt;
  parse(bytes);
  return used().ru_minflt - before;
}

/// The kilobytes by which taking room makes the process larger.
long kilobytesof(const std::string& bytes) {
  const long before = used().ru_maxrss;
  takeroom(bytes);
  return used().ru_maxrss - before;
}

std::string repeated(const std::string& line, int count) {
  std::string bytes;
  for (int n = 0; n < count; ++n) bytes += line;
  return bytes;
}

/// Ends the process by whether something holds in it.
template <typename Holds>
[[noreturn]] void expectinside(const Holds& holds) {
  keepmemory();
  _exit(holds() ? 0 : 1);
}

using testing::ExitedWithCode;

class Room : public testing::Test {
 protected:
  void SetUp() override {
    if (sanitized) GTEST_SKIP() << "the sanitizers have an allocator of their own";
  }

  const std::string lines = repeated("key=value\n", 20000);  // 2,656 pages of lines
};

TEST_F(Room, SparesTheLinesNearlyAllPageFaults) {
  EXPECT_EXIT(expectinside([this] { return faultsof(lines) > 2000; }), ExitedWithCode(0), "") << "without";
  EXPECT_EXIT(expectinside([this] { return takeroom(lines), faultsof(lines) < 300; }), ExitedWithCode(0), "") << "with";
}

TEST_F(Room, IsWhatTheLinesNeed) {
  EXPECT_EXIT(expectinside([this] { return kilobytesof(lines) < 12000; }), ExitedWithCode(0), "");
  const std::string blank = repeated("\n", 1 << 20) + repeated(" \t\n", 1 << 20);
  EXPECT_EXIT(expectinside([&blank] { return kilobytesof(blank) < 1000; }), ExitedWithCode(0), "");
}

TEST_F(Room, ThatIsNotThereIsNoError) {
  const auto takeslittle = [this] {
    const rlimit none{1 << 20, 1 << 20};
    setrlimit(RLIMIT_AS, &none);
    takeroom(lines);
    return true;
  };
  EXPECT_EXIT(expectinside(takeslittle), ExitedWithCode(0), "");
}

}  // namespace

}  // namespace tolvane::test
