#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Step542 : public StoreTest {};
class Step543 : public StoreTest {};
class Step544 : public StoreTest {};
class Step545 : public StoreTest {};

TEST_F(Step542, SetsTheDoubleTypesThatAreThere) {
  EXPECT_EQ(converted("5.42", "[SqlSysDatatypes]\nDOUBLE=a\nFLOAT=b\nDOUBLE PRECISION=c\n"),
            "[SqlSysDatatypes]\nDOUBLE=%Library.Double\nFLOAT=b\nDOUBLE PRECISION=%Library.Double\n");
  EXPECT_EQ(converted("5.42", "[SqlSysDatatypes]\n"), "[SqlSysDatatypes]\n");
}

TEST_F(Step542, CountsAtLeast64NodesAndTheServersAsPorts) {
  EXPECT_EQ(
      converted("5.42",
                "[config]\nLegacyNetConn=0,2,1012,0,0,0\n[DSM-DDP]\nNetIsDDP_1=a\n[Net]\nmaxnode=10\nmaxdsmport=0\n"),
      "[config]\nLegacyNetConn=64,2,1012,1,0,0\n[DSM-DDP]\nNetIsDDP_1=a\n[Net]\nmaxnode=10\nmaxdsmport=1\n");
  EXPECT_EQ(converted("5.42", "[config]\n[DSM-DDP]\nNetIsDDP_1=a\nNetIsDDP_2=b\n[Net]\nmaxdsmport=0\n"),
            "[config]\n[DSM-DDP]\nNetIsDDP_1=a\nNetIsDDP_2=b\n[Net]\nmaxdsmport=2\n");
}

TEST_F(Step542, KeepsCountsThatAreThere) {
  EXPECT_EQ(converted("5.42",
                      "[config]\nLegacyNetConn=0,0,0,4,0,0\n[DSM-DDP]\nDdpHost=h\n[Net]\nmaxnode=128\nmaxdsmport=0\n"),
            "[config]\nLegacyNetConn=128,0,0,4,0,0\n[DSM-DDP]\nDdpHost=h\n[Net]\nmaxnode=128\nmaxdsmport=0\n");
  const std::string lines = "[config]\nLegacyNetConn=12,2,1012,0\n[DSM-DDP]\nNetIsDDP_1=a\n[Net]\nmaxdsmport=0\n";
  EXPECT_EQ(converted("5.42", lines), lines);
}

TEST_F(Step542, NeedsServersOrAHost) {
  const std::string lines = "[config]\nLegacyNetConn=0,0,0,0\n[DSM-DDP]\nDdpHost=\n[Net]\nmaxdsmport=7\n";
  EXPECT_EQ(converted("5.42", lines), lines);
}

const std::string types = "[SqlSysDatatypes]\nSMALLDATETIME=%Library.TimeStamp\nSYSNAME=%Library.String(MAXLEN=128)\n";

/// "[config]" after step "5.43" for a platform of that family.
std::string config543(const std::string& family, const std::string& lines) {
  const std::string head = types + "[config]\noverview=A~" + family + "\n";
  return behind(head, converted("5.43", "[SqlSysDatatypes]\n[config]\noverview=A~" + family + "\n" + lines));
}

TEST_F(Step543, SetsOrAddsTwoDataTypes) {
  EXPECT_EQ(converted("5.43", "[SqlSysDatatypes]\nSYSNAME=x\nBIT=y\n[Miscellaneous]\nDefLoginNSP=USER\n"),
            "[SqlSysDatatypes]\nSYSNAME=%Library.String(MAXLEN=128)\nBIT=y\nSMALLDATETIME=%Library.TimeStamp\n"
            "[Miscellaneous]\n");
}

TEST_F(Step543, ChangesOnlyTheLoginNamespaceAndTwoDataTypesOnUnix) {
  EXPECT_EQ(
      converted("5.43", "[config]\noverview=A~UNIX\nrbufsiz=8\nroutines=100\n[Miscellaneous]\nDefLoginNSP=USER\nx=1\n"),
      "[config]\noverview=A~UNIX\nrbufsiz=8\nroutines=100\n[Miscellaneous]\nx=1\n" + types);
}

TEST_F(Step543, LeavesRoutineBuffersAloneExceptOnVms) {
  EXPECT_EQ(config543("UNIX", "rbufsiz=8\n"), "rbufsiz=8\n");
  EXPECT_EQ(config543("OpenVMS", "rbufsiz=8\n"), "rbufsiz=8\n");
}

TEST_F(Step543, ScalesRoutinesByTheOldBufferSize) {
  EXPECT_EQ(config543("VMS", "rbufsiz=8\nroutines=100\n"), "rbufsiz=32\nroutines=400\n");
  EXPECT_EQ(config543("VMS", "rbufsiz=31\nroutines=1000,7\n"), "rbufsiz=32\nroutines=1032\n");
  EXPECT_EQ(config543("VMS", "rbufsiz=x\nroutines=100\n"), "rbufsiz=32\nroutines=100\n");
  EXPECT_EQ(config543("VMS", "rbufsiz=8,0\nroutines=100\n"), "rbufsiz=8,32\nroutines=100\n");
  // 32.0 / -8 * 100 + 0.1 is -399.9.
  EXPECT_EQ(config543("VMS", "rbufsiz=-8\nroutines=100\n"), "rbufsiz=32\nroutines=-399\n");
  EXPECT_EQ(config543("VMS", "rbufsiz=1\nroutines=2147483647\n"), "rbufsiz=32\nroutines=68719476704\n");
}

TEST_F(Step543, RaisesASmallSecondFieldOnly) {
  EXPECT_EQ(config543("VMS", "rbufsiz=16,64\nroutines=100\n"), "rbufsiz=16,64\nroutines=100\n");
  EXPECT_EQ(config543("VMS", "rbufsiz=16,64\n"), "rbufsiz=16,64\nroutines=0\n");
  EXPECT_EQ(config543("VMS", "rbufsiz=64,16,x\nroutines=10\n"), "rbufsiz=64,32,x\nroutines=20\n");
}

TEST_F(Step543, TakesTheFirstFieldWhenTheSecondIsEqualOrEmpty) {
  EXPECT_EQ(config543("VMS", "rbufsiz=10,10\nroutines=0\n"), "rbufsiz=32\nroutines=3\n");
  EXPECT_EQ(config543("VMS", "rbufsiz=16,\nroutines=5\n"), "rbufsiz=32\nroutines=10\n");
  EXPECT_EQ(config543("VMS", "rbufsiz=32,32\nroutines=5\n"), "rbufsiz=32,32\nroutines=5\n");
}

TEST_F(Step543, AddsWhatIsMissing) {
  EXPECT_EQ(config543("VMS", ""), "rbufsiz=32\nroutines=0\n");
  EXPECT_EQ(config543("VMS", "routines=7\n"), "routines=7\nrbufsiz=32\n");
  EXPECT_EQ(config543("VMS", "rbufsiz=8\n"), "rbufsiz=32\nroutines=0\n");
}

std::string platform(const std::string& record) {
  const std::string head = "[config]\noverview=";
  return converted("5.44", head + record + "\n").substr(head.size());
}

TEST_F(Step544, RenamesAmd64PlatformsOnly) {
  EXPECT_EQ(platform("Win64/AMD64~Windows NT~5.44"), "Win64/x86-64~Windows NT~5.44\n");
  EXPECT_EQ(platform("Linux/AMD64"), "Linux/x86-64\n");
  EXPECT_EQ(platform("AMD64~UNIX"), "x86-64~UNIX\n");
  EXPECT_EQ(platform("X86-64(Windows)~AMD64"), "X86-64(Windows)~AMD64\n");
  EXPECT_EQ(platform("MD64~UNIX"), "MD64~UNIX\n");
  EXPECT_EQ(platform("Linux/AMD64 ~UNIX"), "Linux/AMD64 ~UNIX\n");
  EXPECT_EQ(platform("Linux/amd64~UNIX"), "Linux/amd64~UNIX\n");
  EXPECT_EQ(platform(""), "\n");
}

TEST_F(Step545, DeletesObsoleteKeys) {
  EXPECT_EQ(converted("5.45", "[Language]\nPhysicalCursor=1\nx=1\n[config]\nrbufsiz=32\nrbufsiz=8\n"),
            "[Language]\nx=1\n[config]\nrbufsiz=8\n");
}

TEST_F(Step545, DeletesTheBufferSizeThatStep543HasSet) {
  const std::string before = converted("5.43", "[config]\noverview=A~VMS\n[SqlSysDatatypes]\n");
  EXPECT_EQ(before, "[config]\noverview=A~VMS\nrbufsiz=32\nroutines=0\n" + types);
  EXPECT_EQ(converted("5.45", before), "[config]\noverview=A~VMS\nroutines=0\n" + types);
}

}  // namespace

}  // namespace tolvane::test
