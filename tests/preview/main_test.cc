// The command line of tolvane-preview, what it prints, and its exit status.
#include <gmock/gmock.h>

#include <sstream>

#include "preview/input.h"
#include "tests/support/preview.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::StartsWith;

const std::string platform = "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~";

/// A file that only the last step changes, and one that nothing changes.
const std::string old =
    "[ConfigFile]\nVersion=5.44\n\n\n" + platform + "5.44\nrbufsiz=1\n[Language]\nPhysicalCursor=1\n";
const std::string current = "[ConfigFile]\nVersion=5.45\n\n" + platform + "5.45\n";

const std::string reported =
    "a.qpx: version 5.44, platform X86-64(Ubuntu Linux) (UNIX)\n"
    "  1 step to version 5.45\n"
    "\n"
    "5.45  obsolete keys\n"
    "  [config]\n"
    "    removed  rbufsiz=1\n"
    "  [Language]\n"
    "    removed  PhysicalCursor=1\n"
    "\n"
    "platform check: nothing changes\n"
    "\n"
    "version in the platform record\n"
    "  [config]\n"
    "    changed  overview=X86-64(Ubuntu Linux)~UNIX~5.44\n"
    "         to  overview=X86-64(Ubuntu Linux)~UNIX~5.45\n"
    "\n"
    "version of the file\n"
    "  [ConfigFile]\n"
    "    changed  Version=5.44\n"
    "         to  Version=5.45\n"
    "\n"
    "Result\n"
    "  update would write a.qpx in version 5.45.\n"
    "  The old file would be kept as a.qpx_544.\n"
    "  Lines before: 7 = 3 kept + 2 changed + 0 moved + 2 removed\n"
    "  Lines after:  5 = 3 kept + 2 changed + 0 moved + 0 added\n"
    "  Blank lines dropped: 2; lines split at 511 characters: 0\n";

const std::string diffed =
    "--- a.qpx\n"
    "+++ a.qpx\n"
    "@@ -1,9 +1,7 @@\n"
    " [ConfigFile]\n"
    "-Version=5.44\n"
    "-\n"
    "+Version=5.45\n"
    " \n"
    " [config]\n"
    "-overview=X86-64(Ubuntu Linux)~UNIX~5.44\n"
    "-rbufsiz=1\n"
    "+overview=X86-64(Ubuntu Linux)~UNIX~5.45\n"
    "+\n"
    " [Language]\n"
    "-PhysicalCursor=1\n";

/// The words of a line.
std::vector<std::string> split(const std::string& line) {
  std::istringstream words(line);
  std::vector<std::string> found;
  for (std::string word; words >> word;) found.push_back(word);
  return found;
}

class PreviewProgram : public PreviewTest {
 protected:
  /// What the report says below its heading "Result".
  [[nodiscard]] std::string result(const std::string& text, int status) const {
    write(folder / "a.qpx", text);
    const Outcome shown = preview({"a.qpx"});
    EXPECT_EQ(shown.status, status) << shown.printed;
    const std::size_t begin = shown.printed.find("\nResult\n");
    return begin == std::string::npos ? "no result" : shown.printed.substr(begin + 8);
  }
};

TEST_F(PreviewProgram, ReportsStepByStep) {
  write(folder / "a.qpx", old);
  EXPECT_EQ(preview({"a.qpx"}), (Outcome{1, reported, ""}));
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a.qpx", old}
  }));
}

TEST_F(PreviewProgram, PrintsADiff) {
  write(folder / "a.qpx", old);
  const Outcome shown = preview({"--diff", "a.qpx"});
  EXPECT_EQ(shown.status, 1);
  EXPECT_EQ(shown.printed, diffed);
  ASSERT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  write(folder / "old", old);
  EXPECT_EQ(patched("old", shown.printed), contents(folder / "a.qpx"));
}

TEST_F(PreviewProgram, PrintsAnObjectOfJson) {
  write(folder / "a.qpx",
        "[ConfigFile]\nVersion=5.44\n\n" + platform + "5.44\n[config]\nn\xe4me=\"\n[Language]\nPhysicalCursor=1\n");
  fs::create_directory(folder / "a.qpx_544");
  EXPECT_EQ(
      preview({"--json", "a.qpx"}).printed,
      R"json({"command":"update","files":[{"path":"a.qpx","version":"5.44","platform":"X86-64(Ubuntu Linux)","family":"UNIX",)json"
      R"json("blank":1,"split":0,"cut":0}],"outcome":"changed","pending":1,"parts":[)json"
      R"json({"ladder":"main","version":"5.45","phrase":"obsolete keys","changes":[)json"
      R"json({"kind":"removed","section":"[Language]","line":"PhysicalCursor=1"}]},)json"
      R"json({"ladder":null,"version":null,"phrase":"platform check","changes":[]},)json"
      R"json({"ladder":null,"version":null,"phrase":"version in the platform record","changes":[)json"
      R"json({"kind":"changed","section":"[config]","line":"overview=X86-64(Ubuntu Linux)~UNIX~5.45",)json"
      R"json("old":"overview=X86-64(Ubuntu Linux)~UNIX~5.44"}]},)json"
      R"json({"ladder":null,"version":null,"phrase":"version of the file","changes":[)json"
      R"json({"kind":"changed","section":"[ConfigFile]","line":"Version=5.45","old":"Version=5.44"}]}],)json"
      R"json("messages":[],"backup":{"name":"a.qpx_544","replaces":true,"link":false,"obstacle":null},)json"
      R"json("lines":{"before":8,"after":7,"kept":5,"changed":2,"moved":0,"removed":1,"added":0},"trouble":null})json"
      "\n");
}

TEST_F(PreviewProgram, PrintsTroubleAsJson) {
  const std::string record = "overview=Linux/AMD64~UNIX~5.43~\xff";
  write(folder / "a.qpx",
        "[ConfigFile]\nVersion=5.43\n[config]\n" + record + std::string(511 - record.size(), 'x') + '\n');
  const Outcome shown = preview({"--json", "a.qpx", "none"});
  EXPECT_EQ(shown.status, 2);
  EXPECT_THAT(
      shown.printed,
      HasSubstr(
          R"json("trouble":{"message":"A line would grow beyond 511 characters","version":"5.44",)json"
          R"json("phrase":"names of 64-bit platforms","line":{"path":"a.qpx","number":4,"section":"[config]",)json"
          R"json("key":"overview","length":511}}})json"
          "\n"
          R"json({"command":"update","files":[{"path":"none","version":null,"platform":null,"family":null,)json"
          R"json("blank":0,"split":0,"cut":0}],"outcome":"trouble","pending":0,"parts":[],)json"
          R"json("messages":["Cannot open file none for input."],"backup":null,)json"));
  const fs::path source = TOLVANE_SOURCE;
  write(folder / "all.json", shown.printed);
  EXPECT_EQ(spawn({"/usr/bin/python3", source / "tests" / "preview" / "validate.py",
                   source / "docs" / "preview.schema.json", folder / "all.json"}),
            (Outcome{0, "2 objects\n"}));
}

TEST_F(PreviewProgram, SummarizesInOneLine) {
  write(folder / "a.qpx", old);
  write(folder / "b.qpx", current);
  EXPECT_EQ(preview({"--summary", "a.qpx", "b.qpx"}),
            (Outcome{1,
                     "a.qpx: version 5.44, 1 step pending, 4 lines changed: would be upgraded, backup a.qpx_544\n"
                     "b.qpx: version 5.45 (current), 0 steps pending, 0 lines changed: would stay as it is\n",
                     ""}));
}

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
  EXPECT_EQ(filesin(folder), (Files{
                                 {"a.qpx",     contents(folder / "a.qpx")},
                                 {"a.qpx_544", "(not a file)"            }
  }));
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

TEST_F(PreviewProgram, TellsThatTheTemporaryFileCouldNotBeMade) {
  const std::string longest(252, 'n');
  write(folder / longest, old);
  write(folder / "a.qpx", old);
  fs::create_symlink("nowhere", folder / "a.qpx_tmp");
  for (const std::string& name : {std::string("a.qpx"), longest}) {
    const std::string message = "Cannot open file " + name + "_tmp for output.";
    const std::string why = name == longest ? " (File name too long)" : " (it is there and no plain file)";
    const Outcome shown = preview({name});
    EXPECT_EQ(shown.status, 2);
    EXPECT_EQ(shown.complained, "tolvane-preview: " + name + ": " + message + why + '\n');
    EXPECT_THAT(shown.printed, HasSubstr("\nMessages that update would print\n  " + message + "\n\nResult\n" +
                                         "  update would write nothing. " + message + why + '\n'));
    EXPECT_EQ(run({"update", name}), (Outcome{0, message + '\n'}));
    EXPECT_EQ(contents(folder / name), old);
  }
  write(folder / "b.qpx", old);
  write(folder / "b.qpx_tmp", "stale\n");
  EXPECT_EQ(preview({"b.qpx"}).status, 1) << "a plain one is replaced";
}

TEST_F(PreviewProgram, PutsNoWordIntoTheMouthOfUpdateWhereItGivesUp) {
  write(folder / "a.qpx", old);
  fs::resize_file(folder / "a.qpx", largestinput + 1);
  const std::string trouble = "a.qpx has more than 64 MiB and is not previewed.";
  const Outcome shown = preview({"a.qpx"});
  EXPECT_EQ(shown.printed, "a.qpx\n\nResult\n  " + trouble + '\n');
  EXPECT_EQ(shown.complained, "tolvane-preview: a.qpx: " + trouble + '\n');
  EXPECT_EQ(shown.status, 2);
  EXPECT_EQ(preview({"--summary", "a.qpx"}).printed, "a.qpx: " + trouble + '\n');
  EXPECT_THAT(preview({"--json", "a.qpx"}).printed, HasSubstr(R"("messages":[],)"));
}

TEST_F(PreviewProgram, TellsThatTheResultWouldBeLost) {
  // The version makes the backup's name that of the temporary file.
  const std::string text = "[ConfigFile]\nVersion=t.mp\n\n" + platform + "\n\n[Com]\nCom=4\n";
  EXPECT_THAT(result(text, 0), HasSubstr("the backup would have the name of the temporary file"));
  EXPECT_EQ(run({"update", "a.qpx"}), (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a.qpx"), text);
}

TEST_F(PreviewProgram, ReportsWhatReadingLoses) {
  const std::string lines = std::string(600, 'x') + "\n\n" + std::string("k=1\0y\n", 6);
  EXPECT_THAT(result(old + lines, 1), HasSubstr("  Lines before: 10 = "));
  EXPECT_NE(result(old + lines, 1)
                .find("  Blank lines dropped: 3; lines split at 511 characters: 1; lines cut at a NUL byte: 1\n"),
            std::string::npos);
}

TEST_F(PreviewProgram, ReportsAnUnknownPlatform) {
  write(folder / "a.qpx", "[ConfigFile]\nVersion=5.44\n[config]\noverview=Abacus~WOOD~5.44\nrbufsiz=1\n");
  EXPECT_EQ(preview({"a.qpx"}), (Outcome{2,
                                         "a.qpx: version 5.44, platform Abacus (WOOD)\n"
                                         "  1 step to version 5.45\n"
                                         "\n"
                                         "5.45  obsolete keys\n"
                                         "  [config]\n"
                                         "    removed  rbufsiz=1\n"
                                         "\n"
                                         "platform check\n"
                                         "    update would end here: Unknown platform: Abacus.\n"
                                         "\n"
                                         "Messages that update would print\n"
                                         "  Unknown platform: Abacus.\n"
                                         "\n"
                                         "Result\n"
                                         "  update would write nothing. Unknown platform: Abacus.\n",
                                         "tolvane-preview: a.qpx: Unknown platform: Abacus.\n"}));
}

TEST_F(PreviewProgram, ReportsAFileThatIsNone) {
  write(folder / "a.qpx", "");
  fs::create_directory(folder / "b");
  EXPECT_EQ(preview({"a.qpx"}).printed,
            "a.qpx: no version, no platform\n  0 steps to version 5.45\n"
            "\nMessages that update would print\n  Invalid configuration file format\n"
            "\nResult\n  update would write nothing. Invalid configuration file format\n");
  const std::string invalid = "Invalid configuration file format\n";
  EXPECT_EQ(preview({"a.qpx", "b"}).complained,
            "tolvane-preview: a.qpx: " + invalid +
                "tolvane-preview: b: Invalid configuration file format (Is a directory)\n");
  EXPECT_EQ(preview({"--diff", "a.qpx"}), (Outcome{2, "", "tolvane-preview: a.qpx: " + invalid}));
  EXPECT_EQ(preview({"--summary", "c"}),
            (Outcome{2, "c: would end: Cannot open file c for input. (No such file or directory)\n",
                     "tolvane-preview: c: Cannot open file c for input. (No such file or directory)\n"}));
}

TEST_F(PreviewProgram, GoesOnBehindAFileInTrouble) {
  write(folder / "a.qpx", old);
  write(folder / "c.qpx", current);
  const std::string first =
      "a.qpx: version 5.44, 1 step pending, 4 lines changed: would be upgraded, backup a.qpx_544\n";
  const Outcome shown = preview({"--summary", "a.qpx", "b.qpx", "a.qpx", "c.qpx"});
  EXPECT_EQ(shown.status, 2);
  EXPECT_EQ(shown.printed,
            first + "b.qpx: would end: Cannot open file b.qpx for input. (No such file or directory)\n" + first +
                "c.qpx: version 5.45 (current), 0 steps pending, 0 lines changed: would stay as it is\n");
  EXPECT_EQ(preview({"c.qpx", "a.qpx"}).status, 1);
  EXPECT_EQ(preview({"c.qpx", "c.qpx"}).status, 0);
}

TEST_F(PreviewProgram, ConvertsEachFileAsInAProcessOfItsOwn) {
  // The distinct servers that step "5.3" counts are those of one file.
  const std::string servers =
      "[ConfigFile]\nVersion=5.2\n\n" + platform + "5.2\nLegacyNetConn=1\n\n[Data Servers]\nNetIsUDP_1=birch,7\n";
  write(folder / "a.qpx", servers);
  const std::string once = preview({"a.qpx"}).printed;
  EXPECT_EQ(preview({"a.qpx", "a.qpx"}).printed, once + '\n' + once);
}

TEST_F(PreviewProgram, NamesTheEntryThatWouldGrowTooLong) {
  // Step "5.44" changes "AMD64" to "x86-64", and the record has 511 characters.
  const std::string record = "overview=Linux/AMD64~UNIX~5.43~";
  const std::string longest = record + std::string(511 - record.size(), 'x');
  write(folder / "a.qpx", "[ConfigFile]\nVersion=5.43\n\n[config]\n; " + std::string(500, 'y') + '\n' + longest +
                              "\n[Other]\noverview=" + std::string(502, 'z') + '\n');
  const Outcome shown = preview({"a.qpx"});
  const std::string trouble =
      "A line would grow beyond 511 characters in step 5.44 (names of 64-bit platforms): line 6 of a.qpx, \"overview\" in "
      "[config], 511 characters long\n";
  EXPECT_EQ(shown.status, 2);
  EXPECT_EQ(shown.complained, "tolvane-preview: a.qpx: " + trouble);
  EXPECT_THAT(shown.printed, HasSubstr("\n5.44  names of 64-bit platforms\n    update would end here: " + trouble))
      << shown.printed;
  EXPECT_EQ(run({"update", "a.qpx"}).status, -6);
}

TEST_F(PreviewProgram, ReportsANameThatIsTooLong) {
  std::string name;
  while (name.size() < 500) name += "./";
  name += std::string(510 - name.size(), 'n');
  write(folder / name, old);
  const Outcome shown = preview({"--diff", name});
  EXPECT_EQ(shown.status, 2);
  EXPECT_EQ(shown.complained,
            "tolvane-preview: " + name +
                ": The name of the temporary file or of the backup would be longer than 511 characters.\n");
  EXPECT_EQ(run({"update", name}).status, -6);
}

const std::string systemfile =
    "[ConfigFile]\nFileType=Configuration 3.11\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~3.11\nttysiz=9\n";

TEST_F(PreviewProgram, PreviewsAMerge) {
  write(folder / "s", systemfile);
  write(folder / "n", "[ConfigFile]\nFileType=Network 5.45\n[Net]\nthisco=elm\n");
  const Outcome shown = preview({"merge", "s", "n"});
  EXPECT_EQ(shown.status, 1);
  const std::string head =
      "s: version 3.11, platform X86-64(Ubuntu Linux) (UNIX)\n"
      "n: version 5.45 (current), no platform\n"
      "  26 steps to version 5.45\n"
      "\n"
      "s, the system file:\n"
      "\n"
      "3.12  console log, terminal memory, what became obsolete\n"
      "  [Startup]\n"
      "    added    [Startup]\n"
      "    added    maxconsolelogsize=100000\n"
      "    added    DefaultPort=1972\n"
      "\n"
      "section that describes the network file\n"
      "  [ConfigFile]\n"
      "    removed  [ConfigFile]\n"
      "    removed  FileType=Network 5.45\n"
      "\n"
      "both files joined: nothing changes\n"
      "\n"
      "Both files together:\n"
      "\n";
  EXPECT_THAT(shown.printed, StartsWith(head));
  EXPECT_NE(
      shown.printed.find("\n  merge would write the result to its FILE, and keep no backup of one that is there.\n"
                         "  Lines before: 9 = "),
      std::string::npos);
  ASSERT_EQ(run({"merge", "a", "s", "n"}), (Outcome{1, ""}));
  EXPECT_EQ(patched("s", preview({"--diff", "merge", "s", "n"}).printed), contents(folder / "a"));
  EXPECT_THAT(preview({"--summary", "merge", "s", "n"}).printed,
              StartsWith("s (version 3.11) + n (version 5.45 (current)), 26 steps pending, "));
}

TEST_F(PreviewProgram, ReportsTheTroublesOfAMerge) {
  write(folder / "s", systemfile);
  const Outcome wrong = preview({"merge", "s", "s"});
  EXPECT_EQ(wrong.status, 2);
  EXPECT_EQ(wrong.complained, "tolvane-preview: s, s: Invalid network configuration file type\n");
  EXPECT_EQ(preview({"--diff", "merge", "s", "n"}),
            (Outcome{2, "", "tolvane-preview: s, n: Cannot open file n for input. (No such file or directory)\n"}));
  EXPECT_THAT(preview({"--json", "merge", "s", "n"}).printed, HasSubstr(R"("pending":0)"));
  EXPECT_EQ(preview({"--diff", "merge", "n", "s"}).complained,
            "tolvane-preview: n, s: Cannot open file n for input. (No such file or directory)\n");
}

TEST_F(PreviewProgram, NamesTheLineThatWouldEndAMerge) {
  write(folder / "s", systemfile);
  // Step "3.0" of the network file changes "SYS$C" to "VELMSYS".
  write(folder / "n", "[ConfigFile]\nFileType=Network 2.1\n[Namespace]\nNsp~1=" + std::string(500, 'x') + "SYS$C\n");
  EXPECT_EQ(
      preview({"--diff", "merge", "s", "n"}),
      (Outcome{2, "",
               "tolvane-preview: s, n: A line would grow beyond 511 characters in step 3.0 (the system directory): "
               "line 4 of n, \"Nsp~1\" in [Namespace], 511 characters long\n"}));
  EXPECT_EQ(run({"merge", "a", "s", "n"}).status, -6);
}

TEST_F(PreviewProgram, ReadsAPipeOnce) {
  write(folder / "a.qpx", old);
  const Outcome piped = previewby("cat a.qpx | \"$@\"", {"--summary", "/dev/stdin"});
  EXPECT_THAT(piped.printed, StartsWith("/dev/stdin: version 5.44, 1 step pending, 4"));
  EXPECT_EQ(piped.status, 1);
}

TEST_F(PreviewProgram, ShowsNoControlCharacterRaw) {
  const std::string name = "a\033[31m\n.qpx";
  write(folder / name, old + "bell\a=\x9b\r\n");
  for (const char* form : {"--color=never", "--summary", "--json"}) {
    const Outcome shown = preview({form, name, name + '\b'});
    for (const char character : shown.printed + shown.complained) {
      EXPECT_TRUE(character == '\n' || (character >= ' ' && character != 0x7f)) << form << static_cast<int>(character);
    }
  }
  const Outcome shown = preview({"--diff", name});
  EXPECT_THAT(shown.printed, StartsWith("--- \"a\\033[31m\\n.qpx\"\n+++ \"a\\"));
}

TEST_F(PreviewProgram, ExplainsItself) {
  const Outcome help = preview({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_EQ(help.complained, "");
  for (const char* option :
       {"--diff", "--json", "--summary", "--color=WHEN", "--help", "--version", "merge SYSTEM NETWORK"}) {
    EXPECT_THAT(help.printed, HasSubstr(option)) << option;
  }
  EXPECT_EQ(preview({"--version"}), (Outcome{0, "tolvane-preview 5.45\n", ""}));
}

TEST_F(PreviewProgram, PrintsTheUsageForAnythingElse) {
  write(folder / "a.qpx", current);
  const std::string usage =
      "Usage: tolvane-preview [--diff|--json|--summary] [--color=auto|always|never] FILE...\n"
      "       tolvane-preview [...] merge SYSTEM NETWORK\n";
  for (const char* line : {"", "--", "--unknown a.qpx", "-d a.qpx", "--diff=1 a.qpx", "--color a.qpx",
                           "--color=sometimes a.qpx", "--color", "--diff --json a.qpx", "--summary a.qpx --json",
                           "merge", "merge a.qpx", "merge a.qpx a.qpx a.qpx"}) {
    EXPECT_EQ(preview(split(line)), (Outcome{2, "", usage})) << line;
  }
}

TEST_F(PreviewProgram, TakesWhatStandsBehindTwoDashesAsFiles) {
  write(folder / "--json", current);
  EXPECT_THAT(preview({"--summary", "--", "--json"}).printed, StartsWith("--json: version 5.45 "));
  write(folder / "merge", current);
  EXPECT_EQ(preview({"--summary", "./merge"}).status, 0);
}

bool hascolor(const Outcome& shown) { return shown.printed.find("\033[") != std::string::npos; }

TEST_F(PreviewProgram, ColorsWhenItIsWanted) {
  write(folder / "a.qpx", old);
  EXPECT_FALSE(hascolor(preview({"a.qpx"}))) << "no terminal";
  EXPECT_FALSE(hascolor(preview({"--color=auto", "a.qpx"})));
  EXPECT_FALSE(hascolor(preview({"--color=never", "a.qpx"})));
  EXPECT_TRUE(hascolor(preview({"--color=always", "a.qpx"})));
  EXPECT_TRUE(hascolor(preview({"--color=always", "--diff", "a.qpx"})));
  EXPECT_FALSE(hascolor(preview({"--color=always", "--json", "a.qpx"})));
  EXPECT_TRUE(hascolor(previewby("NO_COLOR=1 exec \"$@\"", {"--color=always", "a.qpx"}))) << "asked for";
}

TEST_F(PreviewProgram, ColorsATerminalUnlessNoColorIsSet) {
  write(folder / "a.qpx", old + "x=\033]0;\a\n");
  // script(1) gives the program a terminal.
  const auto onterminal = [&](const std::string& settings, const std::string& option) {
    return spawn({"/bin/sh", "-c",
                  settings + " script -q -e -c '" + std::string(TOLVANE_PREVIEW) + ' ' + option +
                      " a.qpx' /dev/null </dev/null"});
  };
  const auto colored = [](const Outcome& outcome) { return outcome.printed.find("\033[1m") != std::string::npos; };
  EXPECT_TRUE(colored(onterminal("unset NO_COLOR; TERM=xterm", "")));
  EXPECT_TRUE(colored(onterminal("NO_COLOR= TERM=xterm", "")));
  EXPECT_FALSE(colored(onterminal("NO_COLOR=1 TERM=xterm", "")));
  EXPECT_TRUE(colored(onterminal("NO_COLOR=1 TERM=xterm", "--color=always")));
  EXPECT_FALSE(colored(onterminal("unset NO_COLOR; TERM=dumb", "")));
  const Outcome diff = onterminal("unset NO_COLOR; TERM=xterm", "--diff");
  EXPECT_TRUE(colored(diff));
  EXPECT_EQ(diff.printed.find('\a'), std::string::npos) << "a diff on a terminal is for the eyes";
  EXPECT_EQ(diff.status, 1);
}

TEST_F(PreviewProgram, IsInTroubleWhenItCannotPrint) {
  write(folder / "a.qpx", current);
  fs::copy_file(fs::path(TOLVANE_SOURCE) / "examples" / "server-3.11.qpx", folder / "large.qpx");
  for (const char* word : {"a.qpx", "large.qpx", "--help", "--version"}) {
    EXPECT_EQ(previewby("exec \"$@\" >&-", {word}),
              (Outcome{2, "", "tolvane-preview: standard output: Bad file descriptor\n"}));
    EXPECT_EQ(previewby("exec \"$@\" >/dev/full", {word}),
              (Outcome{2, "", "tolvane-preview: standard output: No space left on device\n"}));
  }
}

TEST_F(PreviewProgram, IsInTroubleWhenItsReaderIsGone) {
  write(folder / "a.qpx", old);
  const Outcome shown = previewby("{ sleep 0.2; \"$@\"; echo $? >status; } | true", {"a.qpx"});
  EXPECT_EQ(shown.complained, "");
  EXPECT_EQ(contents(folder / "status"), "2\n");
}

TEST_F(PreviewProgram, RunsWithoutStandardErrorToo) {
  EXPECT_EQ(previewby("exec \"$@\" 2>&-", {"--summary", "none"}).status, 2);
}

TEST_F(PreviewProgram, WritesNothing) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers bear no tracer";
#endif
  write(folder / "a.qpx", old);
  write(folder / "s", systemfile);
  write(folder / "n", "[ConfigFile]\nFileType=Network 3.11\n[Net]\nthisco=elm\n");
  const std::string traced = folder.string() + ".strace";
  for (const char* line : {"a.qpx", "--diff a.qpx", "--json a.qpx none", "merge s n", "merge n s"}) {
    EXPECT_GE(previewby("exec /usr/bin/strace -qq -o " + traced + " \"$@\"", split(line)).status, 1);
    std::istringstream calls(contents(traced));
    int opened = 0;
    for (std::string call; std::getline(calls, call);) {
      const std::string name = call.substr(0, call.find('('));
      const bool opens = name.starts_with("open") || name == "creat";
      EXPECT_TRUE(!opens || call.find("O_RDONLY") != std::string::npos) << call;
      opened += opens ? 1 : 0;
      if (name == "write" || name == "writev") {
        EXPECT_TRUE(call.starts_with(name + "(1,") || call.starts_with(name + "(2,")) << call;
      }
      for (const char* other :
           {"rename",   "unlink", "link",     "symlink",   "mkdir",     "rmdir", "mknod",    "chmod",
            "fchmod",   "chown",  "truncate", "ftruncate", "fallocate", "utime", "setxattr", "pwrite",
            "sendfile", "fork",   "vfork",    "clone",     "socket",    "memfd"}) {
        EXPECT_FALSE(name.starts_with(other)) << call;
      }
    }
    EXPECT_GT(opened, 0) << "the trace says nothing";
  }
  fs::remove(traced);
  EXPECT_EQ(filesin(folder).size(), 3U);
}

TEST_F(PreviewProgram, SurvivesAnyAllocationThatFails) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers bear no other malloc";
#endif
  write(folder / "a.qpx", old);
  const Outcome whole = preview({"--json", "a.qpx"});
  int failed = 0;
  for (int n = 1; n < 400; n += 3) {
    const std::string setting = "LD_PRELOAD=" TOLVANE_FAILING_MALLOC " FAILING_MALLOC=" + std::to_string(n);
    const Outcome shown = previewby(setting + " \"$@\"", {"--json", "a.qpx"});
    if (shown == whole) continue;
    EXPECT_EQ(shown, (Outcome{2, "", "tolvane-preview: a.qpx: Insufficient memory\n"})) << n;
    ++failed;
  }
  EXPECT_GT(failed, 50);
}

TEST_F(PreviewProgram, ReportsMemoryThatCannotBeHad) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizers reserve more than any limit";
#endif
  std::string large = old + "[Large]\n";
  for (int n = 0; n < 200000; ++n) large += std::to_string(n) + "=1\n";
  write(folder / "a.qpx", large);
  write(folder / "b.qpx", current);
  const Outcome shown = previewby("ulimit -v 60000; exec \"$@\"", {"--summary", "a.qpx", "b.qpx"});
  EXPECT_EQ(shown.status, 2);
  EXPECT_EQ(shown.complained, "tolvane-preview: a.qpx: Insufficient memory\n");
  EXPECT_EQ(shown.printed, "b.qpx: version 5.45 (current), 0 steps pending, 0 lines changed: would stay as it is\n");
}

}  // namespace

}  // namespace tolvane::test
