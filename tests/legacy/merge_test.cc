#include <csignal>

#include "tests/support/program.h"

namespace tolvane::test {

namespace {

const std::string overview = "[config]\noverview=X86-64(Ubuntu Linux)~UNIX~1\n";

class Merge : public ProgramTest {
 protected:
  /// Merges two files of these texts.
  [[nodiscard]] Outcome merge(std::string_view system, std::string_view network) const {
    write(folder / "config.def", system);
    write(folder / "network.def", network);
    return run({"merge", "a.qpx", "config.def", "network.def"});
  }

  /// The target after the merge of two files, the file type of each given.
  [[nodiscard]] std::string merged(const std::string& systemtype, const std::string& system,
                                   const std::string& networktype, const std::string& network) const {
    const std::string systemtext = "[ConfigFile]\nFileType=" + systemtype + "\n" + system;
    const std::string networktext = "[ConfigFile]\nFileType=" + networktype + "\n" + network;
    EXPECT_EQ(merge(systemtext, networktext), (Outcome{1, ""}));
    const Files files = filesin(folder);
    EXPECT_EQ(files.size(), 3U) << "no temporary file, no backup";
    EXPECT_EQ(files.at("config.def"), systemtext);
    EXPECT_EQ(files.at("network.def"), networktext);
    return files.at("a.qpx");
  }

  void expectrefused(std::string_view system, std::string_view network, const std::string& message) {
    write(folder / "a.qpx", "\n\nold");
    EXPECT_EQ(merge(system, network), (Outcome{0, message})) << system << network;
    EXPECT_EQ(filesin(folder),
              filesof("a.qpx", "\n\nold", "config.def", std::string(system), "network.def", std::string(network)));
  }
};

const std::string badsystem = "Invalid system configuration file type\n";
const std::string badnetwork = "Invalid network configuration file type\n";
const std::string goodsystem = "[ConfigFile]\nFileType=Configuration 3.12\n" + overview;
const std::string goodnetwork = "[ConfigFile]\nFileType=Network 3.12\n";

TEST_F(Merge, JoinsTwoFilesWithoutVersions) {
  EXPECT_EQ(merged("Configuration", "x=1\n" + overview, "Network", "y=2\n[Net]\nz=3\n"),
            "[ConfigFile]\nx=1\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~1\n\n[Net]\nz=3\n");
}

TEST_F(Merge, KeepsAVersionThatWasThere) {
  EXPECT_EQ(merged("Configuration", "Version=1\n" + overview, "Network", ""),
            "[ConfigFile]\nVersion=1\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~1\n");
}

TEST_F(Merge, RemovesTheLegacyCommunicationEntryOfAnUnknownVersion) {
  EXPECT_EQ(merged("Configuration 9", overview + "[Com]\nCom=x\n", "Network", "[B]\n"),
            "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~1\n\n[Com]\n\n[B]\n");
}

TEST_F(Merge, TakesTheSecondWordForTheVersion) {
  const std::string current = "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~";
  EXPECT_EQ(merged("Configuration 5.44 extra", overview + "rbufsiz=1\n", "Network", ""), current + "5.45\n");
  EXPECT_EQ(merged("Configuration  5.44", overview + "rbufsiz=1\n", "Network", ""), current + "1\nrbufsiz=1\n");
  EXPECT_EQ(merged("Configuration 5.44\t", overview + "rbufsiz=1\n", "Network", ""), current + "1\nrbufsiz=1\n");
  EXPECT_EQ(merged("Configuration 5.44\r", overview + "rbufsiz=1\n", "Network", ""), current + "1\nrbufsiz=1\n");
}

TEST_F(Merge, TakesTheNetworksVersionForTheNetworkOnly) {
  EXPECT_EQ(merged("Configuration 5.44", overview, "Network 3.11", "[Net]\nthisco=a\nrbufsiz=1\n"),
            "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.45\n\n[Net]\nrbufsiz=1\n"
            "CliSysName=a\n\n[Datasets]\nDataSet_1=VELMTEMP,velmtemp,,0,P,0,0\n");
}

TEST_F(Merge, LinksNetworkLinesBeforeAHeaderToTheLastSystemSection) {
  EXPECT_EQ(merge("[ConfigFile]\nFileType=Configuration 5.44\n" + overview, "first=1\n" + goodnetwork),
            (Outcome{1, ""}));
  EXPECT_EQ(contents(folder / "a.qpx"),
            "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.45\nfirst=1\n");
}

TEST_F(Merge, JoinsNothingForANetworkFileThatIsEmptyThen) {
  EXPECT_EQ(merged("Configuration 5.45", overview, "Network", ""),
            "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~1\n");
}

TEST_F(Merge, KeepsNetworkLinesFromAnEmptyKeyOn) {
  EXPECT_EQ(merged("Configuration 5.45", overview, "Network", "=x\ny=1\n"),
            "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~1\n=x\ny=1\n");
}

TEST_F(Merge, KeepsASectionOfBothFilesTwice) {
  EXPECT_EQ(merged("Configuration 5.44", overview + "[Language]\nPhysicalCursor=1\n", "Network",
                   "[Language]\nPhysicalCursor=2\n"),
            "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~5.45\n\n[Language]\n\n"
            "[Language]\nPhysicalCursor=2\n");
}

TEST_F(Merge, RefusesASystemFileOfAnotherType) {
  for (const std::string text :
       {"", "[config]\n", "[ConfigFile]\n", "[ConfigFile]\nFileType\n", "[ConfigFile]\nFileType=Network 3.1\n",
        "[ConfigFile]\nFileType=configuration 3.1\n", "[ConfigFile]\nFileType=Configurations 3.1\n",
        "[ConfigFile]\nFileType= Configuration 3.1\n", "[ConfigFile]\nFileType=Configuration\t3.1\n",
        "[ConfigFile]\n[B]\nFileType=Configuration 3.1\n", "FileType=Configuration 3.1\n[ConfigFile]\n"}) {
    expectrefused(text, goodnetwork, badsystem);
  }
}

TEST_F(Merge, RefusesANetworkFileOfAnotherType) {
  for (const std::string text : {"", "[ConfigFile]\n", "[ConfigFile]\nFileType=Configuration 3.1\n",
                                 "[ConfigFile]\nFileType=Network\r\n", "[Net]\nFileType=Network 3.1\n"}) {
    expectrefused(goodsystem, text, badnetwork);
  }
}

TEST_F(Merge, RefusesAnUnknownPlatform) {
  expectrefused("[ConfigFile]\nFileType=Configuration 3.12\n[config]\noverview=Toaster~VMS\n", goodnetwork,
                "Unknown platform: Toaster.\n");
}

TEST_F(Merge, ReportsMissingFilesAndCreatesNone) {
  EXPECT_EQ(run({"merge", "a.qpx", "c", "n"}), (Outcome{0, "Cannot open file c for input.\n"}));
  write(folder / "c", goodsystem);
  EXPECT_EQ(run({"merge", "a.qpx", "c", "n"}), (Outcome{0, "Cannot open file n for input.\n"}));
  EXPECT_EQ(filesin(folder), filesof("c", goodsystem));
}

TEST_F(Merge, TestsTheSystemFileBeforeItOpensTheNetworkFile) {
  write(folder / "c", "x");
  EXPECT_EQ(run({"merge", "a.qpx", "c", "n"}), (Outcome{0, badsystem}));
}

TEST_F(Merge, CreatesATargetThatDoesNotExist) {
  EXPECT_EQ(merge(goodsystem, goodnetwork), (Outcome{1, ""}));
  EXPECT_TRUE(contents(folder / "a.qpx").starts_with("[ConfigFile]\nVersion=5.45\n"));
}

TEST_F(Merge, ReplacesTheTargetWithoutReadingIt) {
  write(folder / "a.qpx", std::string(10000, 'x'));
  write(folder / "a.qpx_tmp", "stale");
  EXPECT_EQ(merged("Configuration", overview, "Network", ""),
            "[ConfigFile]\nVersion=5.45\n\n[config]\noverview=X86-64(Ubuntu Linux)~UNIX~1\n");
}

TEST_F(Merge, NeedsTheTargetsNameOnlyAtTheEnd) {
  const std::string name(508, 'n');
  write(folder / "c", "x");
  EXPECT_EQ(run({"merge", name, "c", "n"}), (Outcome{0, badsystem}));
  write(folder / "c", goodsystem);
  write(folder / "n", goodnetwork);
  EXPECT_EQ(run({"merge", name, "c", "n"}).status, -SIGABRT);
  EXPECT_EQ(filesin(folder).size(), 2U);
}

TEST_F(Merge, TakesOneFileForAllThree) {
  const std::string text = "[ConfigFile]\nFileType=Configuration 3.12\n";
  write(folder / "a", text);
  EXPECT_EQ(run({"merge", "a", "a", "a"}), (Outcome{0, badnetwork}));
  EXPECT_EQ(filesin(folder), filesof("a", text));
}

TEST_F(Merge, ReplacesAnInputThatIsItsTarget) {
  const std::string result = "[ConfigFile]\nVersion=5.45\n\n" + overview;
  for (const char* target : {"config.def", "network.def"}) {
    write(folder / "config.def", "[ConfigFile]\nFileType=Configuration\n" + overview);
    write(folder / "network.def", "[ConfigFile]\nFileType=Network\n");
    Files expected = filesin(folder);
    expected[target] = result;
    EXPECT_EQ(run({"merge", target, "config.def", "network.def"}), (Outcome{1, ""})) << target;
    EXPECT_EQ(filesin(folder), expected) << target;
  }
}

TEST_F(Merge, ReplacesALinkThatLeadsNowhere) {
  for (const char* target : {"missing", "a.qpx", "config.def/below"}) {
    std::filesystem::remove(folder / "a.qpx");
    std::filesystem::create_symlink(target, folder / "a.qpx");
    EXPECT_EQ(merge("[ConfigFile]\nFileType=Configuration\n" + overview, "[ConfigFile]\nFileType=Network\n"),
              (Outcome{1, ""}))
        << target;
    EXPECT_EQ(filesin(folder).at("a.qpx"), "[ConfigFile]\nVersion=5.45\n\n" + overview) << target;
    EXPECT_FALSE(std::filesystem::is_symlink(folder / "a.qpx")) << target;
  }
}

TEST_F(Merge, TakesItsFilesFromAnyDirectories) {
  for (const char* name : {"one", "two", "three"}) std::filesystem::create_directory(folder / name);
  write(folder / "two" / "s", "[ConfigFile]\nFileType=Configuration\n" + overview);
  write(folder / "three" / "n", "[ConfigFile]\nFileType=Network\n");
  EXPECT_EQ(run({"merge", "one/a", "two/s", "three/n"}), (Outcome{1, ""}));
  EXPECT_EQ(filesin(folder / "one"), filesof("a", "[ConfigFile]\nVersion=5.45\n\n" + overview));
}

}  // namespace

}  // namespace tolvane::test
