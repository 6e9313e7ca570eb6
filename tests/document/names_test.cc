#include "document/names.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

TEST(Names, AreThatOfTheFileAndAnEnding) {
  EXPECT_EQ(temporaryname("a/b.qpx"), "a/b.qpx_tmp");
  EXPECT_EQ(backupname("a/b.qpx", "52"), "a/b.qpx_52");
  EXPECT_EQ(backupname("a", ""), "a_");
  EXPECT_TRUE(losescontents(temporaryname("a"), backupname("a", "tmp")));
  EXPECT_FALSE(losescontents(temporaryname("a"), backupname("a", "tmp1")));
  EXPECT_EQ(temporaryname(std::string(507, 'x').c_str()).length(), 511U);
  EXPECT_THROW((void)temporaryname(std::string(508, 'x').c_str()), TextTooLong);
}

/// What stands under a name in a directory, and whether removed() removes it, which has to be what is foretold.
class Standings : public ProgramTest {
 protected:
  [[nodiscard]] Standing standing(const std::string& name) const {
    const Standing found = standingunder(AT_FDCWD, (folder / name).c_str());
    const bool prevents = preventsbackup(AT_FDCWD, (folder / name).c_str());
    EXPECT_EQ(removed(AT_FDCWD, (folder / name).c_str()), replaces(found) && !prevents) << name;
    EXPECT_EQ(prevents, name == "full" || found == Standing::toolong) << name;
    std::error_code error;
    EXPECT_EQ(fs::exists(fs::symlink_status(folder / name, error)), name == "full") << name;
    return found;
  }
};

TEST_F(Standings, AreToldApart) {
  write(folder / "file", "x");
  fs::create_symlink("missing", folder / "link");
  fs::create_directory(folder / "empty");
  fs::create_directories(folder / "full" / ".hidden");
  ASSERT_EQ(mkfifo((folder / "fifo").c_str(), 0600), 0);
  EXPECT_EQ(standing("missing"), Standing::nothing);
  EXPECT_EQ(standing("file"), Standing::regular);
  EXPECT_EQ(standing("link"), Standing::link);
  EXPECT_EQ(standing("fifo"), Standing::other);
  EXPECT_EQ(standing("empty"), Standing::directory);
  EXPECT_EQ(standing("full"), Standing::directory);
  EXPECT_EQ(standing(std::string(256, 'x')), Standing::toolong);
}

TEST_F(Standings, GiveWayToATemporaryFile) {
  EXPECT_TRUE(givesway(Standing::nothing));
  EXPECT_TRUE(givesway(Standing::regular));
  for (const Standing standing : {Standing::link, Standing::directory, Standing::other, Standing::toolong}) {
    EXPECT_FALSE(givesway(standing));
  }
}

}  // namespace

}  // namespace tolvane::test
