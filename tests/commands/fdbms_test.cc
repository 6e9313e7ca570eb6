#include "tests/support/program.h"

namespace tolvane::test {

namespace {

class Fdbms : public ProgramTest {
 protected:
  static inline const std::string version = "[ConfigFile]\nVersion=any\n";

  /// The file after the database was added to one of the version and these lines.
  std::string added(const std::string& lines) {
    write(folder / "f.qpx", version + lines);
    EXPECT_EQ(run({"fdbms", "f.qpx"}), (Outcome{1, ""}));
    EXPECT_EQ(filesin(folder).size(), 1U) << "no temporary file, no backup";
    const std::string text = contents(folder / "f.qpx");
    EXPECT_EQ(text.substr(0, version.size()), version);
    return text.substr(version.size());
  }
};

TEST_F(Fdbms, ChangesNothingWhenTheDatabaseIsListed) {
  const std::string lines = "[Datasets]\nDataSet_1=VELMSYS,velmsys\n\n\nDataSet_2=FDBMS,elsewhere,,1\n";
  EXPECT_EQ(added(lines), lines) << "not even the blank lines";
  EXPECT_EQ(added("[Datasets]\nDataSet_1=FDBMS"), "[Datasets]\nDataSet_1=FDBMS");
}

TEST_F(Fdbms, AddsItselfToAMissingOrEmptySection) {
  EXPECT_EQ(added("[Datasets]\n[B]\n"), "\n[Datasets]\nDataSet_1=FDBMS,fdbms,,0,P,0,0\n\n[B]\n");
  EXPECT_EQ(added("[A]\n"), "\n[A]\n\n[Datasets]\nDataSet_1=FDBMS,fdbms,,0,P,0,0\n");
}

TEST_F(Fdbms, FillsTheFirstGapAlsoBeforeAListedDatabase) {
  EXPECT_EQ(added("[Datasets]\nDataSet_1=A\nDataSet_3=FDBMS,fdbms\n[B]\n"),
            "\n[Datasets]\nDataSet_1=A\nDataSet_3=FDBMS,fdbms\nDataSet_2=FDBMS,fdbms,,0,P,0,0\n\n[B]\n");
}

TEST_F(Fdbms, DoesNotTakeANameInLowerCase) {
  EXPECT_EQ(added("[Datasets]\nDataSet_1=fdbms\nDataSet_2=FDBMSX,a\nDataSet_3=a,FDBMS\nDataSet_4\n"),
            "\n[Datasets]\nDataSet_1=fdbms\nDataSet_2=FDBMSX,a\nDataSet_3=a,FDBMS\nDataSet_4\n"
            "DataSet_5=FDBMS,fdbms,,0,P,0,0\n");
}

TEST_F(Fdbms, RefusesAFileWithoutItsVersion) {
  for (const std::string text : {"", "[Datasets]\n", "[ConfigFile]\n[A]\nVersion=1\n"}) {
    write(folder / "f.qpx", text);
    EXPECT_EQ(run({"fdbms", "f.qpx"}), (Outcome{0, "Invalid configuration file format\n"}));
    EXPECT_EQ(filesin(folder), filesof("f.qpx", text));
  }
}

TEST_F(Fdbms, ReportsAMissingFile) {
  EXPECT_EQ(run({"fdbms", "f.qpx"}), (Outcome{0, "Cannot open file f.qpx for input.\n"}));
  EXPECT_EQ(filesin(folder), Files{});
}

TEST_F(Fdbms, ReportsATemporaryFileThatCannotBeWritten) {
  std::filesystem::create_directory(folder / "f.qpx_tmp");
  write(folder / "f.qpx", version);
  EXPECT_EQ(run({"fdbms", "f.qpx"}), (Outcome{0, "Cannot open file f.qpx_tmp for output.\n"}));
  EXPECT_EQ(contents(folder / "f.qpx"), version);
}

}  // namespace

}  // namespace tolvane::test
