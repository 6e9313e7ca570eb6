// Files that cannot be removed, renamed or linked: the exit status is 1, standard output is empty, and standard error
// says where the contents are.
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "tests/support/mounts.h"
#include "tests/support/scenarios.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class Renames : public ProgramTest, public testing::WithParamInterface<Scenario> {
 protected:
  void SetUp() override {
    if (geteuid() != 0) GTEST_SKIP() << "needs root";
    for (const auto& [name, text] : GetParam().before) write(folder / name, text);
  }

  [[nodiscard]] bool inplace() const { return GetParam().inplace(); }

  /// The file cannot be replaced, and the new contents stand under the temporary name.
  void expectrefused(const Outcome& outcome, const std::string& why) const {
    EXPECT_EQ(outcome, (Outcome{1, "", "tolvane: cannot replace a: " + why + "; the new contents are in a_tmp\n"}));
    Files expected = GetParam().before;
    expected["a_tmp"] = GetParam().result;
    expected.erase("a_544");  // kept: the older backup goes first
    EXPECT_EQ(filesin(folder), expected);
  }

  void expectdone(const Outcome& outcome) const {
    EXPECT_EQ(outcome, (Outcome{1, ""}));
    EXPECT_EQ(contents(folder / "a"), GetParam().result);
    if (GetParam().words[0] == "update") {
      EXPECT_EQ(contents(folder / "a_544"), GetParam().old());
    }
    EXPECT_FALSE(fs::exists(folder / "a_tmp") && !inplace());
  }
};

/// Makes a file immutable as long as it lives.
class Immutable {
 public:
  explicit Immutable(const fs::path& path) : file_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) { set(FS_IMMUTABLE_FL); }
  Immutable(const Immutable&) = delete;
  Immutable& operator=(const Immutable&) = delete;
  ~Immutable() {
    set(0);
    (void)close(file_);
  }

  [[nodiscard]] bool made() const { return made_; }

 private:
  void set(int flags) { made_ = ioctl(file_, FS_IOC_SETFLAGS, &flags) == 0; }

  int file_;
  bool made_ = false;
};

TEST_P(Renames, OfAnImmutableFileAreReported) {
  if (inplace()) return;
  const Immutable immutable(folder / "a");
  if (!immutable.made()) GTEST_SKIP() << "the file system has no immutable files";
  expectrefused(run(GetParam().words), "Operation not permitted");
}

TEST_P(Renames, OfAMountPointAreReported) {
  const Mount mount(folder / "a", folder / "a", nullptr, MS_BIND, "");
  if (!mount.mounted()) GTEST_SKIP() << mount.reason();
  if (inplace()) {
    expectdone(run(GetParam().words));
  } else {
    expectrefused(run(GetParam().words), "Device or resource busy");
  }
}

TEST_P(Renames, OfAnotherUsersFileInAStickyDirectoryAreReported) {
  if (inplace()) return;
  fs::remove(folder / "a_tmp");
  fs::remove(folder / "a_544");
  // Everybody may write the file, and so link it: a link that its maker could not remove.
  fs::permissions(folder / "a", fs::perms{0666});
  fs::permissions(folder, fs::perms{01777});
  expectrefused(runasother({}, GetParam().words), "Operation not permitted");
}

TEST_P(Renames, ReplaceAFileThatCannotBeLinked) {
  if (inplace()) return;
  // The rule of protected hard links: it is not his, and he may not write it.
  fs::permissions(folder / "a", fs::perms{0644});
  fs::permissions(folder, fs::perms{0777});
  expectdone(runasother({}, GetParam().words));
}

TEST_P(Renames, WorkInAnUnreadableDirectory) {
  if (inplace()) return;
  fs::remove(folder / "a_tmp");
  fs::permissions(folder, fs::perms{0333});
  const Outcome outcome = runasother({}, GetParam().words);
  fs::permissions(folder, fs::perms{0755});
  expectdone(outcome);
}

/// The file is in the lower layer of an overlay, whose upper layer is on another file system or on the same one.
class Overlays : public Renames {
 protected:
  void runon(const std::string& upper, const std::string& work) {
    fs::create_directory(folder / "merged");
    fs::create_directory(folder / "lower");
    for (const auto& [name, text] : GetParam().before) fs::rename(folder / name, folder / "lower" / name);
    fs::create_hard_link(folder / "lower" / "a", folder / "lower" / "other");
    const std::string lower = folder / "lower";
    const Mount overlay("none", folder / "merged", "overlay", 0,
                        "lowerdir=" + lower + ",upperdir=" + upper + ",workdir=" + work);
    if (!overlay.mounted()) GTEST_SKIP() << overlay.reason();
    const fs::path before = folder;
    folder = before / "merged";
    expectdone(run(GetParam().words));
    EXPECT_EQ(contents(folder / "other"), GetParam().old());
    folder = before;
  }
};

TEST_P(Overlays, WithLayersOnOneFileSystemWork) {
  fs::create_directory(folder / "upper");
  fs::create_directory(folder / "work");
  runon(folder / "upper", folder / "work");
}

TEST_P(Overlays, WithLayersOnTwoFileSystemsWork) {
  fs::create_directory(folder / "memory");
  const Mount memory("none", folder / "memory", "tmpfs", 0, "size=1m");
  if (!memory.mounted()) GTEST_SKIP() << memory.reason();
  fs::create_directory(folder / "memory" / "upper");
  fs::create_directory(folder / "memory" / "work");
  runon(folder / "memory" / "upper", folder / "memory" / "work");
}

INSTANTIATE_TEST_SUITE_P(Command, Renames, testing::ValuesIn(scenarios()), nameof);
INSTANTIATE_TEST_SUITE_P(Command, Overlays, testing::ValuesIn(scenarios()), nameof);

}  // namespace

}  // namespace tolvane::test
