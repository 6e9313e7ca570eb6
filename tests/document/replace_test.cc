#include "document/replace.h"

#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "document/ends.h"
#include "document/overwrite.h"
#include "tests/support/accesslist.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

class OutputFile : public ProgramTest {
 protected:
  [[nodiscard]] std::string path() const { return folder / "a"; }

  /// Replaces the file "a"; the message if that is fatal.
  [[nodiscard]] std::string replaced(std::string_view text) const {
    try {
      const std::string name = path();
      Lock lock{name.c_str()};
      Original original = Original::replaced(lock, name.c_str());
      replace(original, text);
    } catch (const Fatal& end) {
      return end.message;
    }
    return "";
  }

  /// Writes straight over the file "a"; the message if that is fatal.
  [[nodiscard]] std::string overwritten(std::string_view text) const { return overwritten(path(), text); }
  [[nodiscard]] static std::string overwritten(const std::string& path, std::string_view text) {
    try {
      Lock lock{path.c_str()};
      overwrite(Original::opened(lock, path.c_str()), text);
    } catch (const Fatal& end) {
      return end.message;
    }
    return "";
  }

  static constexpr unsigned nobody = 65534;

  /// Replaces the file "a" in a process of an ordinary user.
  void replaceasnobody() const {
    fs::permissions(folder, fs::perms{0777});
    const pid_t child = fork();
    if (child == 0) {
      const bool other = setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0;
      _exit(other && replaced("new\n").empty() ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    ASSERT_EQ(contents(folder / "a"), "new\n");
  }

  [[nodiscard]] std::string cannotopentemporary() const {
    return "Cannot open file " + (folder / "a_tmp").string() + " for output.";
  }

  [[nodiscard]] struct stat statusof(const char* name) const {
    struct stat status = {};
    EXPECT_EQ(stat((folder / name).c_str(), &status), 0) << name;
    return status;
  }

  [[nodiscard]] unsigned mode(const char* name) const { return statusof(name).st_mode & 07777U; }
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

TEST_F(OutputFile, ThatIsNewGetsWhatAnyNewFileGets) {
  const mode_t mask = umask(027);
  EXPECT_EQ(replaced("new\n"), "");
  umask(mask);
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a", "new\n"}
  }));
  EXPECT_EQ(mode("a"), 0640U);
}

TEST_F(OutputFile, IsAnotherFileThanTheOriginal) {
  write(folder / "a", "old\n");
  fs::create_hard_link(folder / "a", folder / "other");
  EXPECT_EQ(replaced("new\n"), "");
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a",     "new\n"},
                                 {"other", "old\n"}
  }));
}

TEST_F(OutputFile, GetsTheModeOfTheOriginalWhateverTheMask) {
  write(folder / "a", "");
  const mode_t mask = umask(077);
  for (const unsigned wanted : {0600U, 0666U, 0440U, 0755U}) {
    fs::permissions(folder / "a", fs::perms{wanted});
    EXPECT_EQ(replaced("new\n"), "");
    EXPECT_EQ(mode("a"), wanted);
  }
  umask(mask);
}

TEST_F(OutputFile, GetsTheOwnerOfTheOriginal) {
  if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  write(folder / "a", "");
  ASSERT_EQ(chown((folder / "a").c_str(), 12, 34), 0);
  fs::permissions(folder / "a", fs::perms{0660});
  EXPECT_EQ(replaced("new\n"), "");
  EXPECT_EQ(statusof("a").st_uid, 12U);
  EXPECT_EQ(statusof("a").st_gid, 34U);
  EXPECT_EQ(mode("a"), 0660U);
}

TEST_F(OutputFile, KeepsTheGroupOfTheOriginalWhereTheOwnerCannotBeKept) {
  if (geteuid() != 0) GTEST_SKIP() << "only root becomes somebody else";
  write(folder / "a", "");
  ASSERT_EQ(chown((folder / "a").c_str(), 0, nobody), 0);
  fs::permissions(folder / "a", fs::perms{0664});
  replaceasnobody();
  EXPECT_EQ(statusof("a").st_uid, nobody);
  EXPECT_EQ(statusof("a").st_gid, nobody);
  EXPECT_EQ(mode("a"), 0664U);
}

TEST_F(OutputFile, IsOpenToNoOtherGroupThanTheOriginal) {
  if (geteuid() != 0) GTEST_SKIP() << "only root becomes somebody else";
  write(folder / "a", "");
  fs::permissions(folder / "a", fs::perms{0664});
  replaceasnobody();
  EXPECT_EQ(mode("a"), 0644U) << "its group is another one, and that could only read the original";
  fs::remove(folder / "a");
  write(folder / "a", "");
  fs::permissions(folder / "a", fs::perms{0775});
  replaceasnobody();
  EXPECT_EQ(mode("a"), 0755U);
}

TEST_F(OutputFile, GetsTheAttributesOfAnOriginalThatMayNotBeRead) {
  if (geteuid() != 0) GTEST_SKIP() << "only root becomes somebody else";
  write(folder / "a", "");
  ASSERT_EQ(chown((folder / "a").c_str(), 0, nobody), 0);
  fs::permissions(folder / "a", fs::perms{0200});
  const bool acls = setlist(folder / "a", accesslist, onemoreuser);
  if (acls) fs::permissions(folder / "a", fs::perms{0200});
  replaceasnobody();
  EXPECT_EQ(statusof("a").st_gid, nobody);
  EXPECT_EQ(mode("a"), 0200U);
  EXPECT_EQ(listof(folder / "a").size(), acls ? onemoreuser.size() : 0U);
}

TEST_F(OutputFile, GetsTheExtendedAttributesOfTheOriginal) {
  write(folder / "a", "");
  if (setxattr((folder / "a").c_str(), "user.tolvane", "value", 5, 0) != 0) {
    GTEST_SKIP() << "the file system has no extended attributes";
  }
  ASSERT_EQ(setxattr((folder / "a").c_str(), "user.other", "", 0, 0), 0);
  EXPECT_EQ(replaced("new\n"), "");
  std::string value(10, ' ');
  EXPECT_EQ(getxattr((folder / "a").c_str(), "user.tolvane", value.data(), value.size()), 5);
  EXPECT_EQ(value.substr(0, 5), "value");
  EXPECT_EQ(getxattr((folder / "a").c_str(), "user.other", value.data(), value.size()), 0);
}

TEST_F(OutputFile, IsOpenToNobodyWhomItsFolderNamesUnlessTheOriginalIs) {
  if (!setlist(folder, "system.posix_acl_default", onemoreuser)) GTEST_SKIP() << "the file system has no ACLs";
  write(folder / "a", "");
  ASSERT_EQ(removexattr((folder / "a").c_str(), accesslist), 0);
  fs::permissions(folder / "a", fs::perms{0640});
  EXPECT_EQ(replaced("new\n"), "");
  EXPECT_EQ(listof(folder / "a"), "");
  EXPECT_EQ(mode("a"), 0640U);

  ASSERT_TRUE(setlist(folder / "a", accesslist, onemoreuser));
  EXPECT_EQ(replaced("new\n"), "");
  EXPECT_EQ(listof(folder / "a"), onemoreuser);
}

TEST_F(OutputFile, ThatIsNewIsOpenToWhomItsFolderNames) {
  if (!setlist(folder, "system.posix_acl_default", onemoreuser)) GTEST_SKIP() << "the file system has no ACLs";
  EXPECT_EQ(replaced("new\n"), "");
  EXPECT_EQ(listof(folder / "a"), onemoreuser);
}

TEST_F(OutputFile, TakesThePlaceOfAStaleFileButNotOfWhatIsLinkedToIt) {
  write(folder / "other", std::string(1000, 'x'));
  fs::create_hard_link(folder / "other", folder / "a_tmp");
  EXPECT_EQ(replaced("new\n"), "");
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a",               "new\n"},
                                 { "other", std::string(1000,    'x')}
  }));
}

TEST_F(OutputFile, IsWrittenThroughNothingButARegularFile) {
  const fs::path temporary = folder / "a_tmp";
  write(folder / "other", "kept\n");
  fs::create_symlink("other", temporary);
  EXPECT_EQ(replaced("new\n"), cannotopentemporary());
  EXPECT_EQ(contents(folder / "other"), "kept\n");
  fs::remove(temporary);

  fs::create_symlink("missing", temporary);
  EXPECT_EQ(replaced("new\n"), cannotopentemporary());
  EXPECT_FALSE(fs::exists(folder / "missing"));
  fs::remove(temporary);

  ASSERT_EQ(mkfifo(temporary.c_str(), 0600), 0);
  EXPECT_EQ(replaced("new\n"), cannotopentemporary());
  EXPECT_TRUE(fs::is_fifo(temporary));
  fs::remove(temporary);

  fs::create_directory(temporary);
  EXPECT_EQ(replaced("new\n"), cannotopentemporary());
}

TEST_F(OutputFile, IsRemovedWhenItCannotBeWrittenWhole) {
  const FileSizeLimit limit(1000);
  EXPECT_EQ(replaced(std::string(1001, 'a')), "Error writing output file");
  EXPECT_EQ(filesin(folder), Files{});
  EXPECT_EQ(replaced(std::string(1000, 'a')), "");
}

TEST_F(OutputFile, DoesNotReplaceAnotherFileThanTheOriginal) {
  const std::string name = path();
  const std::string refused = "Cannot open file " + name + " for output.";
  Lock lock{name.c_str()};
  write(folder / "a", "old\n");
  Original original = Original::opened(lock, name.c_str());
  Original looked = Original::replaced(lock, name.c_str());
  fs::rename(folder / "a", folder / "before");
  write(folder / "a", "other\n");
  for (const auto& attempt : std::vector<std::function<void()>>{
           [&] { replace(original, "new\n"); }, [&] { replace(looked, "new\n"); },
           [&] { replacekeeping(original, "1", "new\n"); }, [&] { overwrite(original, "new\n"); }}) {
    try {
      attempt();
      ADD_FAILURE() << "another file was replaced";
    } catch (const Fatal& end) {
      EXPECT_EQ(end.message, refused);
    }
    EXPECT_EQ(filesin(folder), (Files{
                                   {"a",      "other\n"},
                                   {"before", "old\n"  }
    }));
  }
}

TEST_F(OutputFile, DoesNotComeBackInThePlaceOfAnOriginalThatIsGone) {
  const std::string name = path();
  Lock lock{name.c_str()};
  write(folder / "a", "old\n");
  Original original = Original::opened(lock, name.c_str());
  fs::remove(folder / "a");
  EXPECT_THROW(replace(original, "new\n"), Fatal);
  EXPECT_THROW(replacekeeping(original, "1", "new\n"), Fatal);
  EXPECT_THROW(overwrite(original, "new\n"), Fatal);
  EXPECT_EQ(filesin(folder), Files{});
}

TEST_F(OutputFile, TakesThePlaceOfAFileThatWasCreatedSince) {
  const std::string name = path();
  Lock lock{name.c_str()};
  Original original = Original::replaced(lock, name.c_str());
  ASSERT_TRUE(original.missing());
  write(folder / "a", "other\n");
  fs::permissions(folder / "a", fs::perms{0600});
  replace(original, "new\n");
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a", "new\n"}
  }));
  EXPECT_EQ(mode("a"), 0600U);
}

TEST_F(OutputFile, GoesIntoTheDirectoryOfTheOriginalWhateverItsPathStandsForByNow) {
  fs::create_directory(folder / "real");
  write(folder / "real" / "a", "old\n");
  const std::string name = folder / "real" / "a";
  Lock lock{name.c_str()};
  Original original = Original::opened(lock, name.c_str());
  fs::rename(folder / "real", folder / "moved");
  fs::create_directory(folder / "real");
  write(folder / "real" / "a", "other\n");
  replacekeeping(original, "1", "new\n");
  EXPECT_EQ(filesin(folder / "real"), (Files{
                                          {"a", "other\n"}
  }));
  EXPECT_EQ(filesin(folder / "moved"), (Files{
                                           {"a",   "new\n"},
                                           {"a_1", "old\n"}
  }));
}

TEST_F(OutputFile, KeepsTheOriginalItselfAsTheBackup) {
  const std::string name = path();
  write(folder / "a", "old\n");
  write(folder / "a_1", "older\n");
  const ino_t inode = statusof("a").st_ino;
  Lock lock{name.c_str()};
  Original original = Original::opened(lock, name.c_str());
  replacekeeping(original, "1", "new\n");
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a",   "new\n"},
                                 {"a_1", "old\n"}
  }));
  EXPECT_EQ(statusof("a_1").st_ino, inode);
  EXPECT_EQ(statusof("a_1").st_nlink, 1U);
}

TEST_F(OutputFile, ThatIsOverwrittenStaysTheSameFile) {
  write(folder / "a", "longer than before\n");
  fs::permissions(folder / "a", fs::perms{0604});
  fs::create_hard_link(folder / "a", folder / "other");
  EXPECT_EQ(overwritten("new\n"), "");
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a",     "new\n"},
                                 {"other", "new\n"}
  }));
  EXPECT_EQ(mode("a"), 0604U);
  EXPECT_EQ(overwritten(std::string(10000, 'b')), "");
  EXPECT_EQ(contents(folder / "other"), std::string(10000, 'b'));
  EXPECT_EQ(overwritten(""), "");
  EXPECT_EQ(contents(folder / "other"), "");
}

TEST_F(OutputFile, ThatCannotGrowStaysAsItWas) {
  for (const std::size_t size : {0U, 50U, 100U, 150U}) {
    const std::string old(size, 'o');
    for (rlim_t most = 0; most < 100; most += 9) {
      write(folder / "a", old);
      const FileSizeLimit limit(most);
      EXPECT_EQ(overwritten(std::string(100, 'a')), "Error writing output file");
      EXPECT_EQ(contents(folder / "a"), old) << most;
    }
    write(folder / "a", old);
    const FileSizeLimit limit(100);
    EXPECT_EQ(overwritten(std::string(100, 'a')), "");
    EXPECT_EQ(contents(folder / "a"), std::string(100, 'a'));
  }
}

TEST_F(OutputFile, ThatRoomCannotBeReservedForIsNotWrittenAtAll) {
  write(folder / "a", "old\n");
  const timespec then[] = {
      {1000, 0},
      {1000, 0}
  };
  ASSERT_EQ(utimensat(AT_FDCWD, (folder / "a").c_str(), then, 0), 0);
  const FileSizeLimit limit(50);
  EXPECT_EQ(overwritten(std::string(100, 'a')), "Error writing output file");
  EXPECT_EQ(statusof("a").st_mtim.tv_sec, 1000);
}

TEST_F(OutputFile, ThatCannotBeSyncedIsNoError) {
  EXPECT_EQ(overwritten("/dev/null", "a\n"), "");
  EXPECT_EQ(overwritten("/dev/full", "a\n"), "Error writing output file");
}

}  // namespace

}  // namespace tolvane::test
