// Files that update or merge would refuse, and what tolvane-preview says of them.
#include <gmock/gmock.h>

#include "preview/preview.h"
#include "tests/support/preview.h"

namespace tolvane::test {

namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

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
  fs::resize_file(folder / "a.qpx", largestsource);
  EXPECT_EQ(preview({"--summary", "a.qpx"}).status, 1);
  fs::resize_file(folder / "a.qpx", largestsource + 1);
  const std::string trouble = "a.qpx has more than 64 MiB and is not previewed.";
  const Outcome shown = preview({"a.qpx"});
  EXPECT_EQ(shown.printed, "a.qpx\n\nResult\n  " + trouble + '\n');
  EXPECT_EQ(shown.complained, "tolvane-preview: a.qpx: " + trouble + '\n');
  EXPECT_EQ(shown.status, 2);
  EXPECT_EQ(preview({"--summary", "a.qpx"}).printed, "a.qpx: " + trouble + '\n');
  EXPECT_THAT(preview({"--json", "a.qpx"}).printed,
              testing::AllOf(HasSubstr(R"("messages":[],)"), HasSubstr(R"("before":0,)")));
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

}  // namespace

}  // namespace tolvane::test
