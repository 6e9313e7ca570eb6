// A file that is replaced or written straight over: which file, by way of which name, and what is left of it.
#include "document/replace.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <functional>

#include "document/overwrite.h"
#include "tests/support/outputfile.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

TEST_F(OutputFile, IsAnotherFileThanTheOriginal) {
  write(folder / "a", "old\n");
  fs::create_hard_link(folder / "a", folder / "other");
  EXPECT_EQ(replaced("new\n"), "");
  EXPECT_EQ(filesin(folder), filesof("a", "new\n", "other", "old\n"));
}

TEST_F(OutputFile, TakesThePlaceOfAStaleFileButNotOfWhatIsLinkedToIt) {
  write(folder / "other", std::string(1000, 'x'));
  fs::create_hard_link(folder / "other", folder / "a_tmp");
  EXPECT_EQ(replaced("new\n"), "");
  EXPECT_EQ(filesin(folder), filesof("a", "new\n", "other", std::string(1000, 'x')));
}

TEST_F(OutputFile, IsWrittenThroughNothingButARegularFile) {
  const fs::path temporary = folder / "a_tmp";
  const std::string refused = "Cannot open file " + temporary.string() + " for output.";
  write(folder / "other", "kept\n");
  fs::create_symlink("other", temporary);
  EXPECT_EQ(replaced("new\n"), refused);
  EXPECT_EQ(contents(folder / "other"), "kept\n");
  fs::remove(temporary);

  fs::create_symlink("missing", temporary);
  EXPECT_EQ(replaced("new\n"), refused);
  EXPECT_FALSE(fs::exists(folder / "missing"));
  fs::remove(temporary);

  ASSERT_EQ(mkfifo(temporary.c_str(), 0600), 0);
  EXPECT_EQ(replaced("new\n"), refused);
  EXPECT_TRUE(fs::is_fifo(temporary));
  fs::remove(temporary);

  fs::create_directory(temporary);
  EXPECT_EQ(replaced("new\n"), refused);
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
    EXPECT_EQ(fatal(attempt), refused);
    EXPECT_EQ(filesin(folder), filesof("a", "other\n", "before", "old\n"));
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
  EXPECT_EQ(filesin(folder), filesof("a", "new\n"));
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
  EXPECT_EQ(filesin(folder / "real"), filesof("a", "other\n"));
  EXPECT_EQ(filesin(folder / "moved"), filesof("a", "new\n", "a_1", "old\n"));
}

TEST_F(OutputFile, KeepsTheOriginalItselfAsTheBackup) {
  const std::string name = path();
  write(folder / "a", "old\n");
  write(folder / "a_1", "older\n");
  const ino_t inode = statusof("a").st_ino;
  Lock lock{name.c_str()};
  Original original = Original::opened(lock, name.c_str());
  replacekeeping(original, "1", "new\n");
  EXPECT_EQ(filesin(folder), filesof("a", "new\n", "a_1", "old\n"));
  EXPECT_EQ(statusof("a_1").st_ino, inode);
  EXPECT_EQ(statusof("a_1").st_nlink, 1U);
}

TEST_F(OutputFile, ThatIsOverwrittenStaysTheSameFile) {
  write(folder / "a", "longer than before\n");
  fs::permissions(folder / "a", fs::perms{0604});
  fs::create_hard_link(folder / "a", folder / "other");
  EXPECT_EQ(overwritten("new\n"), "");
  EXPECT_EQ(filesin(folder), filesof("a", "new\n", "other", "new\n"));
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
