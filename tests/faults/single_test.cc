// One system call that fails, each on files that are made for it.
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "tests/support/accesslist.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

const std::string old = "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.44\n";

class OtherFaults : public ProgramTest {
 protected:
  void SetUp() override {
    if (sanitized) GTEST_SKIP() << "the sanitizers bear no tracer";
  }

  /// Runs the program with that fault.
  [[nodiscard]] Outcome runwith(const std::string& fault, const std::vector<std::string>& words) const {
    return runby({"/usr/bin/strace", "-qq", "-o", "/dev/null", "--inject=" + fault}, words);
  }
};

TEST_F(OtherFaults, OfSyncingBesidesPlainFilesAreTold) {
  EXPECT_EQ(runwith("fsync:error=EIO", {"setparameter", "/dev/null", "[A]", "k", "1"}),
            (Outcome{0, "Error writing output file\n"}));
}

TEST_F(OtherFaults, OfSyncingPutBackWhateverLengthTheFileHad) {
  for (const std::string& text : {std::string(), std::string("x"), std::string(200000, 'x')}) {
    write(folder / "a", text);
    EXPECT_EQ(runwith("fsync:error=EIO:when=1", {"setparameter", "a", "[A]", "k", "1"}),
              (Outcome{0, "Error writing output file\n"}));
    EXPECT_EQ(contents(folder / "a"), text);
  }
}

TEST_F(OtherFaults, OfAttributesThatMayNotBeSetAreNone) {
  write(folder / "a", old);
  if (setxattr((folder / "a").c_str(), "user.tolvane", "test", 4, 0) != 0) GTEST_SKIP() << "there are no attributes";
  for (const char* fault : {"fsetxattr:error=EPERM", "fsetxattr:error=EACCES", "fgetxattr:error=EPERM",
                            "fremovexattr:error=ENODATA", "fremovexattr:error=EOPNOTSUPP"}) {
    write(folder / "a", old);
    EXPECT_EQ(runwith(fault, {"update", "a"}), (Outcome{1, ""})) << fault;
    EXPECT_EQ(contents(folder / "a").substr(13, 12), "Version=5.45") << fault;
  }
}

TEST_F(OtherFaults, OfGivingAFileAwayAreToldUnlessThatIsNotPermitted) {
  for (const char* error : {"EDQUOT", "EIO", "ENOSPC", "EINVAL", "EPERM"}) {
    write(folder / "a", old);
    fs::permissions(folder / "a", fs::perms{0664});
    // EINVAL is for an owner that the user namespace does not map.
    const bool permitted = std::string_view(error) != "EPERM" && std::string_view(error) != "EINVAL";
    EXPECT_EQ(runwith(std::string("fchown:error=") + error, {"update", "a"}),
              permitted ? (Outcome{0, "Error writing output file\n"}) : (Outcome{1, ""}))
        << error;
    EXPECT_EQ(contents(folder / "a") == old, permitted) << error;
    const fs::perms mode = fs::status(folder / "a").permissions();
    EXPECT_EQ(mode, permitted ? fs::perms{0664} : fs::perms{0644}) << error;
    EXPECT_FALSE(fs::exists(folder / "a_tmp")) << error;
  }
}

TEST_F(OtherFaults, KilledBeforeTheModeIsSetItIsOpenToNoOtherGroup) {
  if (geteuid() != 0) GTEST_SKIP() << "only root becomes somebody else";
  write(folder / "a", old);
  if (!setlist(folder / "a", accesslist, onemoreuser)) GTEST_SKIP() << "the file system has no access lists";
  // Its owner is an ordinary user, and its group one that the owner is not in.
  ASSERT_EQ(chown((folder / "a").c_str(), 65534, 0), 0);
  ASSERT_EQ(chown(folder.c_str(), 65534, 65534), 0);
  (void)runasother({"/usr/bin/strace", "-qq", "-o", "/dev/null", "--inject=fchmod:signal=SIGKILL"}, {"update", "a"});
  struct stat status = {};
  ASSERT_EQ(stat((folder / "a_tmp").c_str(), &status), 0);
  EXPECT_EQ(status.st_gid, 65534U);
  EXPECT_EQ(status.st_mode & 0077U, 0U);
}

}  // namespace

}  // namespace tolvane::test
