// The mode, owner, ACL and extended attributes of a file that replaces another one.
#include <sys/xattr.h>

#include "tests/support/accesslist.h"
#include "tests/support/outputfile.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

TEST_F(OutputFile, ThatIsNewGetsWhatAnyNewFileGets) {
  const mode_t mask = umask(027);
  EXPECT_EQ(replaced("new\n"), "");
  umask(mask);
  EXPECT_EQ(filesin(folder), filesof("a", "new\n"));
  EXPECT_EQ(mode("a"), 0640U);
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

}  // namespace

}  // namespace tolvane::test
