// What tolvane-preview prints of a file in each form: report, diff, JSON and summary.
#include <gmock/gmock.h>

#include "tests/support/preview.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::StartsWith;

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

TEST_F(PreviewProgram, ReportsStepByStep) {
  write(folder / "a.qpx", old);
  EXPECT_EQ(preview({"a.qpx"}), (Outcome{1, reported, ""}));
  EXPECT_EQ(filesin(folder), filesof("a.qpx", old));
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
  expectvalid(shown.printed, 2);
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

TEST_F(PreviewProgram, ReportsWhatReadingLoses) {
  const std::string lines = std::string(600, 'x') + "\n\n" + std::string("k=1\0y\n", 6);
  EXPECT_THAT(result(old + lines, 1), HasSubstr("  Lines before: 10 = "));
  EXPECT_THAT(result(old + lines, 1),
              HasSubstr("  Blank lines dropped: 3; lines split at 511 characters: 1; lines cut at a NUL byte: 1\n"));
}

TEST_F(PreviewProgram, ConvertsEachFileAsInAProcessOfItsOwn) {
  // The distinct servers that step "5.3" counts are those of one file.
  const std::string servers =
      "[ConfigFile]\nVersion=5.2\n\n" + platform + "5.2\nLegacyNetConn=1\n\n[Data Servers]\nNetIsUDP_1=birch,7\n";
  write(folder / "a.qpx", servers);
  const std::string once = preview({"a.qpx"}).printed;
  EXPECT_EQ(preview({"a.qpx", "a.qpx"}).printed, once + '\n' + once);
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
  EXPECT_THAT(shown.printed,
              HasSubstr("\n  merge would write the result to its FILE, and keep no backup of one that is there.\n"
                        "  Lines before: 9 = "));
  ASSERT_EQ(run({"merge", "a", "s", "n"}), (Outcome{1, ""}));
  EXPECT_EQ(patched("s", preview({"--diff", "merge", "s", "n"}).printed), contents(folder / "a"));
  EXPECT_THAT(preview({"--summary", "merge", "s", "n"}).printed,
              StartsWith("s (version 3.11) + n (version 5.45 (current)), 26 steps pending, "));
}

}  // namespace

}  // namespace tolvane::test
