#include <csignal>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

class Update : public ProgramTest {
 protected:
  static inline const std::string platform = "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~";
  /// A file that only the last step changes.
  static inline const std::string old = "[ConfigFile]\nVersion=5.44\n\n" + platform + "5.44\nrbufsiz=1\n";
  static inline const std::string converted = "[ConfigFile]\nVersion=5.45\n\n" + platform + "5.45\n";

  [[nodiscard]] Outcome update(std::string_view text) const {
    write(folder / "a.qpx", text);
    return run({"update", "a.qpx"});
  }
  void expectinvalid(std::string_view text) const {
    EXPECT_EQ(update(text), (Outcome{0, "Invalid configuration file format\n"})) << text;
    EXPECT_EQ(filesin(folder), filesof("a.qpx", std::string(text)));
  }
};

TEST_F(Update, KeepsTheOldFileUnderItsVersion) {
  EXPECT_EQ(update(old), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", converted, "a.qpx_544", old));
}

TEST_F(Update, NamesTheBackupByLettersAndDigitsOnly) {
  const std::string com = platform + "\n\n[Com]\nCom=OFF\n";
  EXPECT_EQ(update("[ConfigFile]\nVersion=a-5.0.5 b\xe4/\n\n" + com), (Outcome{1, ""}));
  EXPECT_TRUE(filesin(folder).contains("a.qpx_a505b"));
  EXPECT_EQ(update("[ConfigFile]\nVersion\n\n" + com), (Outcome{1, ""}));
  EXPECT_TRUE(filesin(folder).contains("a.qpx_"));
  EXPECT_EQ(contents(folder / "a.qpx"), "[ConfigFile]\nVersion=5.45\n\n" + platform + "\n\n[Com]\n");
}

TEST_F(Update, LosesItsWorkForAVersionThatNamesTheTemporaryFile) {
  const std::string text = "[ConfigFile]\nVersion=t.mp\n\n" + platform + "\n\n[Com]\nCom=OFF\n";
  EXPECT_EQ(update(text), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", text));
}

TEST_F(Update, LeavesACurrentFileUntouchedTheSecondTime) {
  ASSERT_EQ(update(old), (Outcome{1, ""}));
  const auto before = std::filesystem::last_write_time(folder / "a.qpx");
  EXPECT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  EXPECT_EQ(std::filesystem::last_write_time(folder / "a.qpx"), before);
  EXPECT_EQ(filesin(folder), filesof("a.qpx", converted, "a.qpx_544", old));
}

TEST_F(Update, KeepsAFileOfVersion52UnderTheSuffix52) {
  const std::string text = "[ConfigFile]\nVersion=5.2\n\n" + platform + "5.2\n";
  EXPECT_EQ(update(text), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a.qpx_52"), text);
  EXPECT_TRUE(contents(folder / "a.qpx").starts_with("[ConfigFile]\nVersion=5.45\n\n" + platform + "5.45\n"));
}

TEST_F(Update, RewritesACurrentFileWhileTheCheckFindsSomethingInIt) {
  const std::string current = converted + "\n[Com]\n";
  EXPECT_EQ(update(current + "Com=OFF\n"), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", current, "a.qpx_545", current + "Com=OFF\n"));
  EXPECT_EQ(update(old + "\n[Com]\nCom=1\nCom=2\n"), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a.qpx"), converted + "\n[Com]\nCom=2\n");
  EXPECT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a.qpx"), converted + "\n[Com]\n");
  EXPECT_EQ(contents(folder / "a.qpx_545"), converted + "\n[Com]\nCom=2\n");
}

TEST_F(Update, RefusesAFileWithoutItsVersion) {
  expectinvalid("");
  expectinvalid(" \n\t\n");
  expectinvalid("[Startup]\nVersion=5.0\n");
  expectinvalid("[ConfigFile]\n");
  expectinvalid("[ConfigFile]\nProduct=x\n[Startup]\nVersion=5.0\n");
  expectinvalid("[ConfigFile]\nversion=5.0\nVersion =5.0\n");
  expectinvalid("[ConfigFile] \nVersion=5.0\n");
  expectinvalid("[ConfigFile]\n\n[ConfigFile]\nVersion=5.0\n");
}

TEST_F(Update, RefusesAnUnknownPlatformAfterTheSteps) {
  const std::string text = "\n\n[ConfigFile]\nVersion=3.11\n[config]\noverview=Toaster~UNIX~3.11\n";
  EXPECT_EQ(update(text), (Outcome{0, "Unknown platform: Toaster.\n"}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", text));
}

TEST_F(Update, WarnsAndConvertsAFileOfAnotherPlatform) {
  EXPECT_EQ(update("[ConfigFile]\nVersion=5.44\n[config]\noverview=HP/UX~Unix\n"),
            (Outcome{1, "\nWarning: Cannot upgrade from HP/UX to X86-64(Ubuntu Linux)!\nContact Tessvar.\n\n"}));
  EXPECT_EQ(contents(folder / "a.qpx"), "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=HP/UX~Unix~5.45\n");
}

TEST_F(Update, ReportsAMissingFileOfAnyNameLength) {
  EXPECT_EQ(run({"update", "a.qpx"}), (Outcome{0, "Cannot open file a.qpx for input.\n"}));
  EXPECT_EQ(filesin(folder), Files{});
  const std::string name(600, 'n');
  EXPECT_EQ(run({"update", name}), (Outcome{0, "Cannot open file " + name + " for input.\n"}));
}

TEST_F(Update, TakesAFolderForAnEmptyFile) {
  EXPECT_EQ(run({"update", "."}), (Outcome{0, "Invalid configuration file format\n"}));
}

TEST_F(Update, ReportsATemporaryFileThatCannotBeWritten) {
  std::filesystem::create_directory(folder / "a.qpx_tmp");
  EXPECT_EQ(update(old), (Outcome{0, "Cannot open file a.qpx_tmp for output.\n"}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", old, "a.qpx_tmp", "(not a file)"));
}

TEST_F(Update, ReplacesAStaleTemporaryFileAndAnOlderBackup) {
  write(folder / "a.qpx_tmp", std::string(10000, 's'));
  write(folder / "a.qpx_544", "older\n");
  EXPECT_EQ(update(old), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", converted, "a.qpx_544", old));
}

TEST_F(Update, MovesASymbolicLinkToTheBackupName) {
  write(folder / "target", old);
  std::filesystem::create_symlink("target", folder / "a.qpx");
  EXPECT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", converted, "a.qpx_544", old, "target", old));
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "a.qpx_544"));
  EXPECT_FALSE(std::filesystem::is_symlink(folder / "a.qpx"));
}

TEST_F(Update, AbortsForALineThatGrowsTooLongWithTheFileUntouched) {
  // Field 3 of the platform record makes this one 512 characters long.
  const std::string text =
      "[ConfigFile]\nVersion=5.44\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~~" + std::string(472, 'x') + "\n";
  EXPECT_EQ(update(text).status, -SIGABRT);
  EXPECT_EQ(filesin(folder), filesof("a.qpx", text));
}

TEST_F(Update, ShowsItsWarningsBeforeItAborts) {
  EXPECT_EQ(update("[ConfigFile]\nVersion=3.12\n[config]\noverview=HP~Unix~3.12\n[Miscellaneous]\nRelCommit=" +
                   std::string(501, 'x') + "\n"),
            (Outcome{-SIGABRT, "Unknown o/s type Unix\n"}));
}

TEST_F(Update, FillsALineToTheLastCharacter) {
  const std::string tail(471, 'x');
  EXPECT_EQ(update("[ConfigFile]\nVersion=5.44\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~~" + tail + "\n"),
            (Outcome{1, ""}));
  const std::string line = "overview=X86-64(Ubuntu Linux)~UNIX~5.45~" + tail;
  ASSERT_EQ(line.size(), 511U);
  EXPECT_EQ(contents(folder / "a.qpx"), "[ConfigFile]\nVersion=5.45\n\n[config]\n" + line + "\n");
}

TEST_F(Update, AbortsForAFileNameThatIsTooLongForItsTemporaryName) {
  std::string name = "./";
  while (name.size() < 508 - 10) name += "./";
  name += std::string(508 - name.size(), 'n');
  ASSERT_EQ(name.size(), 508U);
  write(folder / name, old);
  EXPECT_EQ(run({"update", name}).status, -SIGABRT);
  EXPECT_EQ(filesin(folder), filesof(std::filesystem::path(name).filename(), old));
}

TEST_F(Update, ReportsThatMemoryIsInsufficient) {
  if (sanitized) GTEST_SKIP() << "the sanitizer takes more address space than the limit leaves";
  std::string text = old;
  for (int n = 0; n < 100000; ++n) text += "k\n";
  write(folder / "a.qpx", text);
  EXPECT_EQ(runwithin("-v 30000", {"update", "a.qpx"}), (Outcome{0, "Insufficient memory\n"}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", text));
}

TEST_F(Update, LeavesNoTemporaryFileBehindAFileSizeLimit) {
  const std::string text = old + "k=" + std::string(500, 'v') + "\n";
  write(folder / "a.qpx", text);
  EXPECT_EQ(runwithin("-f 1", {"update", "a.qpx"}), (Outcome{0, "Error writing output file\n"}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", text));
}

TEST_F(Update, KeepsTheModeOfTheFile) {
  namespace fs = std::filesystem;
  write(folder / "a.qpx", old);
  fs::permissions(folder / "a.qpx", fs::perms{0640});
  ASSERT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  EXPECT_EQ(fs::status(folder / "a.qpx").permissions(), fs::perms{0640});
  EXPECT_EQ(fs::status(folder / "a.qpx_544").permissions(), fs::perms{0640});
}

TEST_F(Update, WritesThroughNoLinkOfTheTemporaryName) {
  write(folder / "target", "kept\n");
  write(folder / "a.qpx", old);
  std::filesystem::create_symlink("target", folder / "a.qpx_tmp");
  EXPECT_EQ(run({"update", "a.qpx"}), (Outcome{0, "Cannot open file a.qpx_tmp for output.\n"}));
  EXPECT_EQ(contents(folder / "target"), "kept\n");
  EXPECT_EQ(contents(folder / "a.qpx"), old);
}

TEST_F(Update, KeepsCarriageReturns) {
  const std::string text = "[ConfigFile]\nVersion=5.44\nA=1\r\n" + platform + "5.44\nB=2\r\n\r\n";
  EXPECT_EQ(update(text), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a.qpx"), "[ConfigFile]\nVersion=5.45\nA=1\r\n\n" + platform + "5.45\nB=2\r\n\r\n");
}

}  // namespace

}  // namespace tolvane::test
