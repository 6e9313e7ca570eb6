// What tolvane-preview says would come of a file and of its backup. update then does the same.
#include <gmock/gmock.h>

#include "tests/support/preview.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::StartsWith;

TEST_F(PreviewProgram, TellsThatNothingWouldChange) {
  EXPECT_EQ(result(current, 0),
            "  update would write nothing: the file is current.\n"
            "  Lines before: 4 = 4 kept + 0 changed + 0 moved + 0 removed\n"
            "  Lines after:  4 = 4 kept + 0 changed + 0 moved + 0 added\n");
  EXPECT_THAT(result("[ConfigFile]\nVersion=9.1\n\n" + platform + "9.1\n", 0),
              StartsWith("  update would write nothing: the version is not known."));
  EXPECT_EQ(preview({"--summary", "a.qpx"}).printed,
            "a.qpx: version 9.1 (not known), 0 steps pending, 0 lines changed: would stay as it is\n");
}

TEST_F(PreviewProgram, TellsWhatThePlatformCheckDoesToAFileThatPassesNoStep) {
  // It removes the communication entry, and that alone gets the file the current version.
  const std::string text = "[ConfigFile]\nVersion=9.1\n\n" + platform + "\n\n[Com]\nCom=4\n";
  EXPECT_THAT(result(text, 1), StartsWith("  update would write a.qpx in version 5.45, though its version is not known "
                                          "and it passes no step.\n"
                                          "  The old file would be kept as a.qpx_91.\n"
                                          "  Lines before: 6 = 4 kept + 1 changed + 0 moved + 1 removed\n"));
  EXPECT_EQ(preview({"--summary", "a.qpx"}).printed,
            "a.qpx: version 9.1 (not known), 0 steps pending, 2 lines changed: would be written without a step, "
            "backup a.qpx_91\n");
  EXPECT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  EXPECT_TRUE(filesin(folder).contains("a.qpx_91"));
  EXPECT_THAT(result(current + "[Com]\nCom=4\n", 1),
              StartsWith("  update would write a.qpx in version 5.45, though it passes no step.\n"));
}

TEST_F(PreviewProgram, ShowsNoChangeThatIsNotWritten) {
  // A platform that may not be taken over: the check removes the communication entry, but nothing is written.
  const std::string text = "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=Linux/x86-64~UNIX~5.45\n\n[Com]\nCom=4\n";
  write(folder / "a.qpx", text);
  const Outcome shown = preview({"a.qpx"});
  EXPECT_EQ(shown.status, 0);
  EXPECT_THAT(shown.printed, HasSubstr("\nplatform check: nothing changes\n\n"
                                       "Messages that update would print\n"
                                       "  Warning: Cannot upgrade from Linux/x86-64 to X86-64(Ubuntu Linux)!\n"
                                       "  Contact Tessvar.\n\nResult\n  update would write nothing"))
      << shown.printed;
  EXPECT_EQ(preview({"--summary", "a.qpx"}).printed,
            "a.qpx: version 5.45 (current), 0 steps pending, 0 lines changed: would stay as it is, with a warning\n");
  ASSERT_EQ(run({"update", "a.qpx"}).status, 1);
  EXPECT_EQ(contents(folder / "a.qpx"), text);
}

TEST_F(PreviewProgram, SummarizesThatThereWouldBeAWarning) {
  write(folder / "a.qpx", "[ConfigFile]\nVersion=5.44\n\n[config]\noverview=Linux/x86-64~UNIX~5.44\n");
  EXPECT_EQ(preview({"--summary", "a.qpx"}).printed,
            "a.qpx: version 5.44, 1 step pending, 2 lines changed: would be upgraded with a warning, "
            "backup a.qpx_544\n");
}

TEST_F(PreviewProgram, TellsAboutTheBackup) {
  write(folder / "a.qpx_544", "older\n");
  EXPECT_THAT(result(old, 1), HasSubstr("kept as a.qpx_544, in place of the older one that is there.\n"));
  fs::remove(folder / "a.qpx_544");
  fs::create_directory(folder / "a.qpx_544");
  EXPECT_THAT(result(old, 1), HasSubstr("kept as a.qpx_544, in place of the older one that is there.\n"));
  ASSERT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a.qpx_544"), old) << "an empty folder goes";
}

TEST_F(PreviewProgram, TellsWhyThereWouldBeNoBackup) {
  const std::string before = "a.qpx: version 5.44, 1 step pending, 4 lines changed: would be upgraded, ";
  fs::create_directory(folder / "a.qpx_544");
  write(folder / "a.qpx_544" / "inside", "");
  EXPECT_THAT(result(old, 1), HasSubstr("would not be kept as a.qpx_544: a folder that is not empty has this name.\n"));
  EXPECT_EQ(preview({"--summary", "a.qpx"}).printed,
            before + "no backup a.qpx_544 (a folder that is not empty has this name)\n");
  EXPECT_THAT(preview({"--json", "a.qpx"}).printed,
              HasSubstr(R"("obstacle":"a folder that is not empty has this name")"));
  ASSERT_EQ(run({"update", "a.qpx"}).status, 1);
  EXPECT_TRUE(fs::is_directory(folder / "a.qpx_544"));

  const std::string version(300, 'v');
  const std::string text = "[ConfigFile]\nVersion=" + version + "\n\n" + platform + "\n\n[Com]\nCom=4\n";
  EXPECT_THAT(result(text, 1),
              HasSubstr("kept as a.qpx_" + version + ": this name is too long for the file system.\n"));
  ASSERT_EQ(run({"update", "a.qpx"}).status, 1);
  EXPECT_EQ(filesin(folder), filesof("a.qpx", contents(folder / "a.qpx"), "a.qpx_544", "(not a file)"));
}

TEST_F(PreviewProgram, TellsThatALinkWouldItselfBeTheBackup) {
  write(folder / "target", old);
  fs::create_symlink("target", folder / "a.qpx");
  EXPECT_THAT(preview({"a.qpx"}).printed,
              HasSubstr("\n  The old file would be kept as a.qpx_544.\n"
                        "  The old file is a symbolic link: the link itself would go, and what it points to stay as it "
                        "is.\n"));
  EXPECT_EQ(preview({"--summary", "a.qpx"}).printed,
            "a.qpx: version 5.44, 1 step pending, 4 lines changed: would be upgraded, "
            "backup a.qpx_544 (the symbolic link itself)\n");
  EXPECT_THAT(preview({"--json", "a.qpx"}).printed, HasSubstr(R"("replaces":false,"link":true,"obstacle":null)"));
  ASSERT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  EXPECT_TRUE(fs::is_symlink(folder / "a.qpx_544"));
  EXPECT_EQ(contents(folder / "target"), old);
}

TEST_F(PreviewProgram, TellsThatTheResultWouldBeLost) {
  // The version makes the backup's name that of the temporary file.
  const std::string text = "[ConfigFile]\nVersion=t.mp\n\n" + platform + "\n\n[Com]\nCom=4\n";
  EXPECT_THAT(result(text, 0), HasSubstr("the backup would have the name of the temporary file"));
  EXPECT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a.qpx"), text);
}

}  // namespace

}  // namespace tolvane::test
