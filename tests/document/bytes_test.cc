#include "document/bytes.h"

#include <fcntl.h>

#include <cerrno>

#include "document/descriptor.h"
#include "tests/support/fatal.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

class ReadAll : public ProgramTest {
 protected:
  /// The error of reading a file, whose bytes are in `bytes` then.
  int read(const std::string& path, std::size_t limit = 1 << 20) {
    const Descriptor file{open(path.c_str(), O_RDONLY | O_CLOEXEC)};
    EXPECT_TRUE(file.isopen());
    return readall(file.number(), bytes, limit);
  }

  std::string bytes;
};

TEST_F(ReadAll, ReadsEveryByte) {
  for (const int size : {0, 1, 4095, 4096, 4097, 200000}) {
    std::string expected;
    for (int n = 0; n < size; ++n) expected += static_cast<char>(n * 7);
    write(folder / "a", expected);
    EXPECT_EQ(read(folder / "a"), 0);
    EXPECT_EQ(bytes, expected);
  }
}

TEST_F(ReadAll, ReadsAFileThatTellsNoSize) {
  EXPECT_EQ(read("/proc/self/status"), 0);
  EXPECT_TRUE(bytes.starts_with("Name:"));
  EXPECT_TRUE(bytes.ends_with('\n'));
}

TEST_F(ReadAll, StopsBehindTheLimit) {
  write(folder / "a", "0123456789");
  EXPECT_EQ(read(folder / "a", 10), 0);
  EXPECT_EQ(bytes.size(), 10U);
  EXPECT_EQ(read(folder / "a", 9), 0);
  EXPECT_EQ(bytes.size(), 10U);
  EXPECT_EQ(read(folder / "a", 5), 0);
  EXPECT_EQ(bytes.size(), 6U);
  EXPECT_EQ(read("/dev/zero", 10000), 0);
  EXPECT_EQ(bytes.size(), 10001U);
}

TEST_F(ReadAll, ReturnsTheError) {
  EXPECT_EQ(read(folder), EISDIR);
  EXPECT_EQ(bytes, "");
  // The kernel refuses to read the page at address 0.
  EXPECT_EQ(read("/proc/self/mem"), EIO);
}

TEST(ReadErrors, EndARun) {
  EXPECT_NO_THROW(checkopen(0, "a"));
  EXPECT_THROW(checkopen(ENOMEM, "a"), std::bad_alloc);
  EXPECT_EQ(fatal([] { checkopen(EACCES, "a"); }), "Cannot open file a for input.");
  EXPECT_NO_THROW(checkread(0, "a"));
  EXPECT_NO_THROW(checkread(EISDIR, "a")) << "a directory counts as an empty file";
  EXPECT_EQ(fatal([] { checkread(EIO, "a"); }), "Cannot open file a for input.");
}

}  // namespace

}  // namespace tolvane::test
