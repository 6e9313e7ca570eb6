// A file system that is really full, and a limit on the size of files, which everybody can have.
#include <unistd.h>

#include <fstream>

#include "tests/support/mounts.h"
#include "tests/support/scenarios.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

/// A small file system of this process's own on a folder.
class SmallDisk : public Mount {
 public:
  explicit SmallDisk(const fs::path& folder) : Mount("none", folder, "tmpfs", 0, "size=1m"), folder_(folder) {}

  /// Takes all of its room but that many bytes.
  void fill(std::uintmax_t left) const {
    std::ofstream stream(filler(), std::ios::binary | std::ios::trunc);
    const std::string block(4096, 'f');
    while (stream << block << std::flush) continue;
    stream.close();
    ASSERT_EQ(fs::space(folder_).available, 0U);
    fs::resize_file(filler(), fs::file_size(filler()) - left);
    ASSERT_EQ(fs::space(folder_).available, left);
  }

  void empty() const { fs::remove(filler()); }

 private:
  [[nodiscard]] fs::path filler() const { return folder_ / "filler"; }

  fs::path folder_;
};

std::string repeated(std::string_view text, int times) {
  std::string all;
  for (int time = 0; time < times; ++time) all += text;
  return all;
}

/// Files that have many sections without an empty line before them, and so grow by some pages.
std::vector<Scenario> growing() {
  const std::string platform = "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~";
  const std::string old = "[ConfigFile]\nVersion=5.44\n\n" + platform + "5.44\n";
  const std::string current = "[ConfigFile]\nVersion=5.45\n\n" + platform + "5.45\n";
  const std::string system = "[ConfigFile]\nFileType=Configuration 5.44\n" + platform + "5.44\n";
  const std::string database = "\n[Datasets]\nDataSet_1=FDBMS,fdbms,,0,P,0,0\n";
  const std::string tight = repeated("[S]\n", 8000);
  const std::string spaced = repeated("\n[S]\n", 8000);
  const std::string network = "[ConfigFile]\nFileType=Network\n";
  return {
      {"Update",       {"update", "a"},                             {{"a", old + tight}},                                    current + spaced       },
      {"Fdbms",        {"fdbms", "a"},                              {{"a", old + tight}},                                    old + spaced + database},
      {"Merge",        {"merge", "a", "s", "n"},                    {{"a", "old\n"}, {"s", system + tight}, {"n", network}}, current + spaced       },
      {"SetParameter", {"setparameter", "a", "[config]", "k", "1"}, {{"a", old + tight}},                                    old + "k=1\n" + spaced },
  };
}

class FullDiskFaults : public ProgramTest, public testing::WithParamInterface<Scenario> {
 protected:
  static constexpr std::uintmax_t page = 4096;

  /// The room that the run needs beside what is there, in whole pages.
  [[nodiscard]] static std::uintmax_t needed() {
    const std::uintmax_t all = pages(GetParam().result.size());
    return GetParam().inplace() ? all - pages(GetParam().old().size()) : all;
  }

  [[nodiscard]] static std::uintmax_t pages(std::uintmax_t size) { return (size + page - 1) / page * page; }

  void prepare() const {
    for (const auto& [name, text] : GetParam().before) write(folder / name, text);
  }

  [[nodiscard]] Files withoutfiller() const {
    Files files = filesin(folder);
    files.erase("filler");
    return files;
  }
};

TEST_P(FullDiskFaults, KeepTheFile) {
  if (geteuid() != 0) GTEST_SKIP() << "only root mounts a file system";
  const SmallDisk disk(folder);
  if (!disk.mounted()) GTEST_SKIP() << "no file system can be mounted here: " << disk.reason();
  prepare();
  for (const std::uintmax_t left : {std::uintmax_t{0}, needed() / 2 / page * page, needed() - page}) {
    disk.fill(left);
    EXPECT_EQ(run(GetParam().words), (Outcome{0, "Error writing output file\n"})) << left;
    EXPECT_EQ(withoutfiller(), GetParam().before) << left;
    EXPECT_EQ(fs::space(folder).available, left) << "what was reserved or written is free again";
    disk.empty();
  }
  disk.fill(needed());
  EXPECT_EQ(run(GetParam().words), (Outcome{1, ""})) << "just enough room";
  EXPECT_EQ(contents(folder / "a"), GetParam().result);
}

TEST_P(FullDiskFaults, OfALimitKeepTheFile) {
  prepare();
  // In units of 512 bytes. The first holds less than there is, the others some of what is added.
  const std::size_t whole = (GetParam().result.size() + 511) / 512;
  for (const std::size_t limit : {std::size_t{1}, whole / 2, whole - 5, whole - 1}) {
    EXPECT_EQ(runwithin("-f " + std::to_string(limit), GetParam().words), (Outcome{0, "Error writing output file\n"}))
        << limit;
    EXPECT_EQ(filesin(folder), GetParam().before) << limit;
  }
  EXPECT_EQ(runwithin("-f " + std::to_string(whole), GetParam().words), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a"), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Command, FullDiskFaults, testing::ValuesIn(growing()), nameof);

class FullDisk : public ProgramTest {};

TEST_F(FullDisk, StillTakesAParameterThatNeedsNoMoreRoom) {
  if (geteuid() != 0) GTEST_SKIP() << "only root mounts a file system";
  const SmallDisk disk(folder);
  if (!disk.mounted()) GTEST_SKIP() << "no file system can be mounted here: " << disk.reason();
  write(folder / "a", "[A]\nk=1\n");
  disk.fill(0);
  EXPECT_EQ(run({"setparameter", "a", "[A]", "k", "1000"}), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a"), "[A]\nk=1000\n");
}

TEST_F(FullDisk, OfAFileSystemThatReservesNothingKeepsTheFile) {
  if (sanitized) GTEST_SKIP() << "the sanitizers bear no tracer";
  if (geteuid() != 0) GTEST_SKIP() << "only root mounts a file system";
  const SmallDisk disk(folder);
  if (!disk.mounted()) GTEST_SKIP() << "no file system can be mounted here: " << disk.reason();
  const Scenario scenario = growing().back();
  ASSERT_TRUE(scenario.inplace());
  write(folder / "a", scenario.old());
  disk.fill(4096);
  EXPECT_EQ(runby({"/usr/bin/strace", "-qq", "-o", "/dev/null", "--inject=fallocate:error=EOPNOTSUPP"}, scenario.words),
            (Outcome{0, "Error writing output file\n"}));
  EXPECT_EQ(contents(folder / "a"), scenario.old()) << "put back, after some of the new contents were written";
  EXPECT_EQ(fs::space(folder).available, 4096U);
}

}  // namespace

}  // namespace tolvane::test
