// Very long lines and very many of them: what they are converted to is known by construction.
#include <sys/stat.h>

#include <fstream>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t megabyte = 1U << 20U;

class LargeFiles : public ProgramTest {
 protected:
  static inline const std::string old =
      "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44\n";
  static inline const std::string converted =
      "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.45\n";

  /// The file "a", converted, continues with that many characters in lines of 511.
  void expectsplit(std::size_t characters) const {
    std::ifstream file(folder / "a", std::ios::binary);
    std::string head(converted.size(), ' ');
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    EXPECT_EQ(head, converted);
    std::size_t found = 0;
    std::string line;
    while (found < characters && std::getline(file, line)) {
      const std::size_t wanted = std::min<std::size_t>(511, characters - found);
      ASSERT_TRUE(line == std::string(wanted, 'x')) << "after " << found << ": " << line;
      found += wanted;
    }
    EXPECT_EQ(found, characters);
    EXPECT_EQ(file.get(), std::ifstream::traits_type::eof());
  }

  /// Runs a command within that much memory, in kilobytes, while the shell's command feeds a pipe.
  [[nodiscard]] Outcome runfed(const std::string& feed, const std::string& limit,
                               const std::vector<std::string>& words) const {
    const std::string script = "(" + feed + ") 2>/dev/null & ulimit -v " + limit +
                               "; timeout 100 \"$0\" \"$@\"; status=$?; wait; exit $status";
    return runby({"/bin/sh", "-c", script}, words);
  }
};

const std::string gigabyteline = "head -c 1073741824 /dev/zero | tr '\\0' x";

TEST_F(LargeFiles, ALineOf64MegabytesIsSplit) {
  write(folder / "a", old + std::string(64 * megabyte, 'x'));
  EXPECT_EQ(run({"update", "a"}), (Outcome{1, ""}));
  expectsplit(64 * megabyte);
  EXPECT_EQ(fs::file_size(folder / "a_544"), old.size() + 64 * megabyte);
}

TEST_F(LargeFiles, ALineOfAGigabyteEndsWithTheMemory) {
  if (sanitized) GTEST_SKIP() << "the sanitizers need more room than a limit leaves";
  write(folder / "a", old);
  write(folder / "n", "[ConfigFile]\nFileType=Network\n");
  ASSERT_EQ(mkfifo((folder / "s").c_str(), 0600), 0);
  const Files before = filesin(folder);
  const std::string feed = "{ printf '[ConfigFile]\\nFileType=Configuration 5.44\\n'; " + gigabyteline + "; } > s";
  EXPECT_EQ(runfed(feed, "150000", {"merge", "a", "s", "n"}), (Outcome{0, "Insufficient memory\n"}));
  EXPECT_EQ(filesin(folder), before);
}

/// Needs some 3 GB of memory and 1 GB of disk.
class HeavyLargeFiles : public LargeFiles {};

TEST_F(HeavyLargeFiles, ALineOfAGigabyteIsSplit) {
  if (sanitized) GTEST_SKIP() << "the sanitizers need several times the memory";
  write(folder / "source", old);
  ASSERT_EQ(mkfifo((folder / "a").c_str(), 0600), 0);
  EXPECT_EQ(runfed("{ cat source; " + gigabyteline + "; } > a", "unlimited", {"update", "a"}), (Outcome{1, ""}));
  expectsplit(1024 * megabyte);
  EXPECT_TRUE(fs::is_fifo(folder / "a_544"));
}

/// A section of that many lines that no step knows.
std::string manylines(int count) {
  std::string lines = "\n[Mine]\n";
  for (int line = 0; line < count; ++line)
    lines += "key" + std::to_string(line) + "=" + std::to_string(line * 7) + "\n";
  return lines;
}

TEST_F(LargeFiles, AMillionLinesAreConverted) {
  const std::string lines = manylines(1000000);
  write(folder / "a", old + lines);
  EXPECT_EQ(run({"update", "a"}), (Outcome{1, ""}));
  EXPECT_TRUE(contents(folder / "a") == converted + lines);
  EXPECT_TRUE(contents(folder / "a_544") == old + lines);
  EXPECT_EQ(run({"setparameter", "a", "[Mine]", "last", "1"}), (Outcome{1, ""}));
  EXPECT_TRUE(contents(folder / "a") == converted + lines + "last=1\n");
  EXPECT_EQ(run({"fdbms", "a"}), (Outcome{1, ""}));
  EXPECT_TRUE(contents(folder / "a") == converted + lines + "last=1\n\n[Datasets]\nDataSet_1=FDBMS,fdbms,,0,P,0,0\n");
}

TEST_F(LargeFiles, AHundredThousandLinesPassEveryStepAsTheyAre) {
  const std::string example = contents(fs::path(TOLVANE_SOURCE) / "examples/server-3.11.qpx");
  write(folder / "small", example);
  const Outcome outcome = run({"update", "small"});
  EXPECT_EQ(outcome.status, 1);
  const std::string lines = manylines(100000);
  write(folder / "a", lines + example);
  EXPECT_EQ(run({"update", "a"}), outcome);
  EXPECT_TRUE(contents(folder / "a") == lines.substr(1) + "\n" + contents(folder / "small"));
}

}  // namespace

}  // namespace tolvane::test
