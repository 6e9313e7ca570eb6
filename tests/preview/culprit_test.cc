// The line that would end a conversion is named, wherever a step makes lines longer.
#include "preview/preview.h"
#include "tests/support/program.h"

namespace tolvane::test {

namespace {

/// The text made 511 characters long.
std::string filled(const std::string& text) { return text + std::string(511 - text.size(), 'x') + '\n'; }

const std::string platformrecord = "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~\n";

/// A file of that version, with long lines that are no trouble before and behind the others.
std::string file(const std::string& version, const std::string& lines) {
  return "[ConfigFile]\nVersion=" + version + '\n' + filled("; ") + lines + "[Other]\n" + filled("overview=") +
         filled("ZPGApp_1=");
}

class Culprit : public ProgramTest {
 protected:
  /// Where the update of the file would end, as "<step>: <key> of <section>, line <number>".
  [[nodiscard]] std::string ending(const std::string& text) const {
    write(folder / "a", text);
    const std::string path = folder / "a";
    const Preview preview = previewof({path.c_str()});
    if (!preview.trouble || !preview.trouble->toolong) return "no line";
    EXPECT_EQ(run({"update", "a"}).status, -6) << "tolvane itself bears the file";
    const Part& part = preview.parts.back();
    const std::string where = std::string(part.version.empty() ? part.phrase : part.version) + ": ";
    if (!preview.trouble->line) return where + "unknown";
    const LongLine& line = *preview.trouble->line;
    EXPECT_EQ(line.length, 511U);
    return where + line.key + " of " + line.section + ", line " + std::to_string(line.number);
  }
};

TEST_F(Culprit, IsNoLineWithoutTrouble) { EXPECT_EQ(ending(file("5.44", platformrecord)), "no line"); }

TEST_F(Culprit, IsTheEntryThatIsRewritten) {
  EXPECT_EQ(ending(file("5.43", "[config]\n" + filled("overview=Linux/AMD64~UNIX~5.43~"))),
            "5.44: overview of [config], line 5");
  EXPECT_EQ(
      ending(file("5.44", "[config]\n" + filled("overview=X86-64(Ubuntu Linux)~UNIX~~") + "[Com]\n" + filled("Com="))),
      "version in the platform record: overview of [config], line 5");
  EXPECT_EQ(ending(file("4.1", "[config]\noverview=Tru64 UNIX~UNIX~4.1\n[MagTape]\nDrive_1=47~x\n" +
                                   filled("Drive_2=48~/dev/nrmt0l~"))),
            "4.2: Drive_2 of [MagTape], line 8");
}

TEST_F(Culprit, IsTheEntryWithoutWhichTheRunWouldEndElsewhere) {
  // Cut short, the platform's name does not grow, but is unknown.
  EXPECT_EQ(ending(file("5.43", "[config]\noverview=" + std::string(497, 'x') + "AMD64\n")),
            "5.44: overview of [config], line 5");
}

TEST_F(Culprit, IsTheEntryWhoseFieldsAreFilledUp) {
  EXPECT_EQ(ending(file("5.33", platformrecord + "[ZPG.Applications]\nZPGApp_1=/a\n" + filled("ZPGApp_2=/b,") +
                                    "ZPGApp_3=/c\n")),
            "5.34: ZPGApp_2 of [ZPG.Applications], line 8");
  EXPECT_EQ(ending(file("5.0", platformrecord + "[Datasets]\nDataSet_1=VELMSYS\n" + filled("DataSet_2=VELMAUDIT,"))),
            "5.0.5: DataSet_2 of [Datasets], line 8");
}

TEST_F(Culprit, IsTheEntryWhoseNumbersAreRepaired) {
  // Field 1 becomes 64; other entries are read before that is written.
  EXPECT_EQ(ending(file("5.41", platformrecord + filled("LegacyNetConn=0,2,3,4,") +
                                    "[DSM-DDP]\nDdpHost=elm\n[Net]\nmaxnode=8\n")),
            "5.42: LegacyNetConn of [config], line 6");
}

TEST_F(Culprit, IsTheEntryWhoseValueGoesToAnother) {
  EXPECT_EQ(
      ending(file("3.11", platformrecord + "[Startup]\nDomainspaceMaster=YES\n[Net]\n" + filled("NSBackupMaster="))),
      "3.12: NSBackupMaster of [Net], line 9");
  EXPECT_EQ(ending(file("3.14", "[config]\noverview=VAX~VMS~3.14\n" + filled("usephysicalmem="))), "no line")
      << "the other key is as long";
  EXPECT_EQ(ending(file("3.13", platformrecord + "[Startup]\n" + filled("nethard="))),
            "3.14: nethard of [Startup], line 7");
}

TEST_F(Culprit, IsTheEntryThatNamesASection) {
  EXPECT_EQ(ending(file("5.40", platformrecord + "[Namespaces]\nNsp_1=USER\n" + filled("Nsp_2=") +
                                    "[NspMap.USER]\nGloMap_1=a\n")),
            "5.41: Nsp_2 of [Namespaces], line 8");
}

TEST_F(Culprit, IsTheFirstOfSeveral) {
  EXPECT_EQ(ending(file("5.33", platformrecord + "[ZPG.Applications]\nZPGApp_1=/a\n" + filled("ZPGApp_2=/b,") +
                                    filled("ZPGApp_3=/c,"))),
            "5.34: ZPGApp_2 of [ZPG.Applications], line 8");
}

TEST_F(Culprit, CountsTheLinesOfTheFile) {
  EXPECT_EQ(ending("\n\n[ConfigFile]\nVersion=5.43\n" + std::string(1200, 'y') + "\n[config]\n\n" +
                   filled("overview=Linux/AMD64~UNIX~5.43~")),
            "5.44: overview of [config], line 8");
}

}  // namespace

}  // namespace tolvane::test
