#include "document/outputfile.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "document/ends.h"
#include "tests/support/accesslist.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class OutputFile : public ProgramTest {
 protected:
  /// Creates `new` like `model`; the message if that is fatal.
  [[nodiscard]] std::string create(std::string_view text) const {
    try {
      createlike((folder / "model").c_str(), (folder / "new").c_str(), text);
    } catch (const Fatal& end) {
      return end.message;
    }
    return "";
  }

  static constexpr unsigned nobody = 65534;

  /// The same in a process of an ordinary user.
  void createasnobody() const {
    fs::permissions(folder, fs::perms{0777});
    const pid_t child = fork();
    if (child == 0) {
      const bool other = setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0;
      _exit(other && create("a\n").empty() ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
  }

  [[nodiscard]] std::string cannotopen() const {
    return "Cannot open file " + (folder / "new").string() + " for output.";
  }

  [[nodiscard]] unsigned mode(const char* name) const {
    return static_cast<unsigned>(fs::status(folder / name).permissions());
  }
};

/// Lets no file of this process grow beyond that size, as long as it lives.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{size, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    (void)std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST_F(OutputFile, WithoutAModelGetsWhatAnyNewFileGets) {
  const mode_t mask = umask(027);
  EXPECT_EQ(create("a\n"), "");
  umask(mask);
  EXPECT_EQ(filesin(folder), (Files{
                                 {"new", "a\n"}
  }));
  EXPECT_EQ(mode("new"), 0640U);
}

TEST_F(OutputFile, GetsTheModeOfItsModelWhateverTheMask) {
  write(folder / "model", "");
  const mode_t mask = umask(077);
  for (const unsigned wanted : {0600U, 0666U, 0440U, 0755U}) {
    fs::permissions(folder / "model", fs::perms{wanted});
    EXPECT_EQ(create("a\n"), "");
    EXPECT_EQ(mode("new"), wanted);
  }
  umask(mask);
}

TEST_F(OutputFile, GetsTheOwnerOfItsModel) {
  if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  write(folder / "model", "");
  ASSERT_EQ(chown((folder / "model").c_str(), 12, 34), 0);
  fs::permissions(folder / "model", fs::perms{0660});
  EXPECT_EQ(create("a\n"), "");
  struct stat status = {};
  ASSERT_EQ(stat((folder / "new").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, 12U);
  EXPECT_EQ(status.st_gid, 34U);
  EXPECT_EQ(mode("new"), 0660U);
}

TEST_F(OutputFile, KeepsTheGroupOfItsModelWhereTheOwnerCannotBeKept) {
  if (geteuid() != 0) GTEST_SKIP() << "only root becomes somebody else";
  write(folder / "model", "");
  ASSERT_EQ(chown((folder / "model").c_str(), 0, nobody), 0);
  fs::permissions(folder / "model", fs::perms{0664});
  createasnobody();
  struct stat status = {};
  ASSERT_EQ(stat((folder / "new").c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, nobody);
  EXPECT_EQ(status.st_gid, nobody);
  EXPECT_EQ(mode("new"), 0664U);
}

TEST_F(OutputFile, IsOpenToNoOtherGroupThanItsModel) {
  if (geteuid() != 0) GTEST_SKIP() << "only root becomes somebody else";
  write(folder / "model", "");
  fs::permissions(folder / "model", fs::perms{0664});
  createasnobody();
  EXPECT_EQ(mode("new"), 0644U) << "its group is another one, and that could only read the model";
  fs::remove(folder / "new");
  fs::permissions(folder / "model", fs::perms{0775});
  createasnobody();
  EXPECT_EQ(mode("new"), 0755U);
}

TEST_F(OutputFile, GetsTheExtendedAttributesOfItsModel) {
  write(folder / "model", "");
  if (setxattr((folder / "model").c_str(), "user.tolvane", "value", 5, 0) != 0) {
    GTEST_SKIP() << "the file system has no extended attributes";
  }
  ASSERT_EQ(setxattr((folder / "model").c_str(), "user.other", "", 0, 0), 0);
  EXPECT_EQ(create("a\n"), "");
  std::string value(10, ' ');
  EXPECT_EQ(getxattr((folder / "new").c_str(), "user.tolvane", value.data(), value.size()), 5);
  EXPECT_EQ(value.substr(0, 5), "value");
  EXPECT_EQ(getxattr((folder / "new").c_str(), "user.other", value.data(), value.size()), 0);
}

TEST_F(OutputFile, IsOpenToNobodyWhomItsFolderNamesUnlessItsModelIs) {
  if (!setlist(folder, "system.posix_acl_default", onemoreuser)) GTEST_SKIP() << "the file system has no access lists";
  write(folder / "model", "");
  ASSERT_EQ(removexattr((folder / "model").c_str(), accesslist), 0);
  fs::permissions(folder / "model", fs::perms{0640});
  EXPECT_EQ(create("a\n"), "");
  EXPECT_EQ(listof(folder / "new"), "");
  EXPECT_EQ(mode("new"), 0640U);

  ASSERT_TRUE(setlist(folder / "model", accesslist, onemoreuser));
  EXPECT_EQ(create("a\n"), "");
  EXPECT_EQ(listof(folder / "new"), onemoreuser);
}

TEST_F(OutputFile, WithoutAModelIsOpenToWhomItsFolderNames) {
  if (!setlist(folder, "system.posix_acl_default", onemoreuser)) GTEST_SKIP() << "the file system has no access lists";
  EXPECT_EQ(create("a\n"), "");
  EXPECT_EQ(listof(folder / "new"), onemoreuser);
}

TEST_F(OutputFile, ReplacesAStaleFileButNotWhatIsLinkedToIt) {
  write(folder / "other", std::string(1000, 'x'));
  fs::create_hard_link(folder / "other", folder / "new");
  EXPECT_EQ(create("a\n"), "");
  EXPECT_EQ(filesin(folder), (Files{
                                 {"new",             "a\n"},
                                 { "other", std::string(1000,  'x')}
  }));
}

TEST_F(OutputFile, IsWrittenThroughNothingButAPlainFile) {
  write(folder / "other", "kept\n");
  fs::create_symlink("other", folder / "new");
  EXPECT_EQ(create("a\n"), cannotopen());
  EXPECT_EQ(contents(folder / "other"), "kept\n");
  fs::remove(folder / "new");

  fs::create_symlink("missing", folder / "new");
  EXPECT_EQ(create("a\n"), cannotopen());
  EXPECT_FALSE(fs::exists(folder / "missing"));
  fs::remove(folder / "new");

  ASSERT_EQ(mkfifo((folder / "new").c_str(), 0600), 0);
  EXPECT_EQ(create("a\n"), cannotopen());
  EXPECT_TRUE(fs::is_fifo(folder / "new"));
  fs::remove(folder / "new");

  fs::create_directory(folder / "new");
  EXPECT_EQ(create("a\n"), cannotopen());
}

TEST_F(OutputFile, IsRemovedWhenItCannotBeWrittenWhole) {
  const FileSizeLimit limit(1000);
  EXPECT_EQ(create(std::string(1001, 'a')), "Error writing output file");
  EXPECT_EQ(filesin(folder), Files{});
  EXPECT_EQ(create(std::string(1000, 'a')), "");
}

TEST_F(OutputFile, ThatIsOverwrittenStaysTheSameFile) {
  write(folder / "new", "longer than before\n");
  fs::permissions(folder / "new", fs::perms{0604});
  fs::create_hard_link(folder / "new", folder / "other");
  overwrite((folder / "new").c_str(), "a\n");
  EXPECT_EQ(filesin(folder), (Files{
                                 {"new",   "a\n"},
                                 {"other", "a\n"}
  }));
  EXPECT_EQ(mode("new"), 0604U);
  overwrite((folder / "new").c_str(), std::string(10000, 'b'));
  EXPECT_EQ(contents(folder / "other"), std::string(10000, 'b'));
  overwrite((folder / "new").c_str(), "");
  EXPECT_EQ(contents(folder / "other"), "");
}

TEST_F(OutputFile, ThatCannotGrowStaysAsItWas) {
  for (const std::size_t size : {0U, 50U, 100U, 150U}) {
    const std::string old(size, 'o');
    for (rlim_t most = 0; most < 100; most += 9) {
      write(folder / "new", old);
      const FileSizeLimit limit(most);
      EXPECT_THROW(overwrite((folder / "new").c_str(), std::string(100, 'a')), Fatal);
      EXPECT_EQ(contents(folder / "new"), old) << most;
    }
    write(folder / "new", old);
    const FileSizeLimit limit(100);
    EXPECT_NO_THROW(overwrite((folder / "new").c_str(), std::string(100, 'a')));
    EXPECT_EQ(contents(folder / "new"), std::string(100, 'a'));
  }
}

TEST_F(OutputFile, ThatRoomCannotBeReservedForIsNotWrittenAtAll) {
  write(folder / "new", "old\n");
  const timespec then[] = {
      {1000, 0},
      {1000, 0}
  };
  ASSERT_EQ(utimensat(AT_FDCWD, (folder / "new").c_str(), then, 0), 0);
  const FileSizeLimit limit(50);
  EXPECT_THROW(overwrite((folder / "new").c_str(), std::string(100, 'a')), Fatal);
  struct stat status = {};
  ASSERT_EQ(stat((folder / "new").c_str(), &status), 0);
  EXPECT_EQ(status.st_mtim.tv_sec, 1000);
}

TEST_F(OutputFile, ThatIsMissingIsCreated) {
  overwrite((folder / "new").c_str(), "a\n");
  EXPECT_EQ(contents(folder / "new"), "a\n");
}

TEST_F(OutputFile, ThatCannotBeSyncedIsNoError) {
  EXPECT_NO_THROW(overwrite("/dev/null", "a\n"));
  EXPECT_THROW(overwrite("/dev/full", "a\n"), Fatal);
}

TEST_F(OutputFile, FolderThatIsMissingNeedNotBeSynced) { EXPECT_NO_THROW(syncfolder("no/such/folder/name")); }

}  // namespace

}  // namespace tolvane::test
