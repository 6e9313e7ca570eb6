#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Step53 : public StoreTest {};
class Step532 : public StoreTest {};
class Step534 : public StoreTest {};
class Step535 : public StoreTest {};
class Step536 : public StoreTest {};

const std::string summary = "[config]\nLegacyNetConn=old\n[Cluster]\nClusterCommAddr=10.0.0.1\n";

/// The legacy communication summary of some sections.
std::string summaryof(const std::string& sections) {
  const std::string result = converted("5.3", sections + summary);
  const std::string head = sections + "[config]\nLegacyNetConn=";
  EXPECT_EQ(result.substr(0, head.size()), head);
  return result.substr(head.size(), result.find("\n[Cluster]\nClusterCommAddr=10.0.0.1\n") - head.size());
}

TEST_F(Step53, CountsEntriesAsNodesAndDistinctPairsOfEachSeriesAsConnections) {
  EXPECT_EQ(summaryof("[Data Servers]\nNetIsUDP_1=alpha,7\nNetIsUDP_2=alpha,7\nNetIsEther_1=beta,7\n"),
            "8,2,1012,0,0,0");
  EXPECT_EQ(summaryof("[Data Servers]\nNetIsUDP_1=a,7,x\nNetIsEther_1=a,7,y\nNetIsEther_2=a,7\nNetIsUDP_2=a\n"),
            "9,3,1518,0,0,0");
  EXPECT_EQ(summaryof("[Data Servers]\nNetIsUDP_2=alpha,7\n"), "0,0,0,0,0,0");
}

TEST_F(Step53, CountsAtLeast64NodesForDdpIn32Bits) {
  EXPECT_EQ(summaryof("[DSM-DDP]\nNetIsDDP_1=a\n[Net]\nmaxnode=40\n"), "64,0,0,0,0,0");
  EXPECT_EQ(summaryof("[DSM-DDP]\nNetIsDDP_1=a\n[Net]\nmaxnode=100\n"), "100,0,0,0,0,0");
  EXPECT_EQ(summaryof("[DSM-DDP]\nNetIsDDP_1=a\n"), "64,0,0,0,0,0");
  EXPECT_EQ(summaryof("[DSM-DDP]\nNetIsDDP_2=a\n[Net]\nmaxnode=100\n"), "0,0,0,0,0,0");
  EXPECT_EQ(summaryof("[Data Servers]\nNetIsUDP_1=a\n[DSM-DDP]\nNetIsDDP_1=a\n[Net]\nmaxnode=2147483647\n"),
            "-2147483643,1,506,0,0,0");
}

TEST_F(Step53, CountsAHostAsAConnection) {
  EXPECT_EQ(summaryof("[DSM-DDP]\nDdpHost=h\n"), "0,1,506,0,0,0");
  EXPECT_EQ(summaryof("[DSM-DDP]\nDdpHost=\n"), "0,0,0,0,0,0");
}

TEST_F(Step53, CopiesTheThreeLimits) {
  EXPECT_EQ(summaryof("[Net]\nmaxdsmport=4 x\nmaxdsmhostperport=-5\nmaxdsmjobsperconn=6\n"), "0,0,0,4,-5,6");
}

TEST_F(Step53, WritesNoSummaryWhereNoneWasButTheClusterAddress) {
  EXPECT_EQ(converted("5.3", "[config]\n[Data Servers]\nNetIsUDP_1=a,7\n"),
            "[config]\n[Data Servers]\nNetIsUDP_1=a,7\n[Cluster]\nClusterCommAddr=\n");
}

TEST_F(Step532, DropsJournalSetsKillsAndJournalsNewGlobalsForAValueOf2) {
  EXPECT_EQ(converted("5.32", "[Startup]\nJournalSetsKills=2,x\n[Miscellaneous]\nJrnlNewGlo=0\n"),
            "[Startup]\n[Miscellaneous]\nJrnlNewGlo=1\n");
  EXPECT_EQ(converted("5.32", "[Startup]\nJournalSetsKills=12\n[Miscellaneous]\nJrnlNewGlo=0\n"),
            "[Startup]\n[Miscellaneous]\nJrnlNewGlo=0\n");
  EXPECT_EQ(converted("5.32", "[Startup]\nJournalSetsKills=2\n[Miscellaneous]\n"), "[Startup]\n[Miscellaneous]\n");
}

/// "maxconsolelogsize" after step "5.34".
std::string consolelog(const std::string& before) {
  const std::string result = converted("5.34", "[Startup]\n" + before);
  return result.substr(10, result.find("[ZPG.Applications]") - 10);
}

TEST_F(Step534, RaisesASmallConsoleLogTo1MegabyteAndAMissingOneTo5) {
  EXPECT_EQ(consolelog("maxconsolelogsize=500000\n"), "maxconsolelogsize=1048576\n");
  EXPECT_EQ(consolelog(""), "maxconsolelogsize=5242880\n");
  EXPECT_EQ(consolelog("maxconsolelogsize=2000000\n"), "maxconsolelogsize=2000000\n");
  EXPECT_EQ(consolelog("maxconsolelogsize=1048576 b\n"), "maxconsolelogsize=1048576 b\n");
  EXPECT_EQ(consolelog("maxconsolelogsize\n"), "maxconsolelogsize=1048576\n");
}

TEST_F(Step534, FixesTheWebApplications) {
  EXPECT_NE(converted("5.34", "").find("\n[ZPG.Applications]\nZPGApp_1=/zpg/samples,"), std::string::npos);
}

/// "[config]" after a step; "[Startup]" is given so that it stands first.
std::string step535(const std::string& lines) {
  const std::string head = "[Startup]\nWebServer=ON,8972\n[config]\n";
  return behind(head, converted("5.35", "[Startup]\n[config]\n" + lines));
}

TEST_F(Step535, AddsAWebServerBesideAnExistingOne) {
  EXPECT_EQ(converted("5.35", "[config]\nimplheap=131072\n[Startup]\nWebServer=OFF\n"),
            "[config]\nimplheap=131072\n[Startup]\nWebServer=OFF\nWebServer=ON,8972\n");
}

TEST_F(Step535, TakesImplheapsSecondFieldIfItHasOneAndRaisesIt) {
  EXPECT_EQ(step535("implheap=65536,262144\n"), "implheap=262144\n");
  EXPECT_EQ(step535("implheap=262144\n"), "implheap=262144\n");
  EXPECT_EQ(step535("implheap=1,200000 b,3\n"), "implheap=200000 b\n");
  EXPECT_EQ(step535("implheap=65536\n"), "implheap=131072\n");
  EXPECT_EQ(step535("implheap=131071 b\n"), "implheap=131072\n");
  EXPECT_EQ(step535("implheap=131072 b\n"), "implheap=131072 b\n");
  EXPECT_EQ(step535("implheap=262144,\n"), "implheap=131072\n");
  EXPECT_EQ(step535("implheap\n"), "implheap=131072\n");
  EXPECT_EQ(step535(""), "implheap=131072\n");
}

TEST_F(Step535, TakesResidentMemorysSecondFieldIfItHasOne) {
  const std::string heap = "implheap=131072\n";
  EXPECT_EQ(step535(heap + "useresidentmem=0,1\n"), heap + "useresidentmem=1\n");
  EXPECT_EQ(step535(heap + "useresidentmem=0,1,2\n"), heap + "useresidentmem=1\n");
  EXPECT_EQ(step535(heap + "useresidentmem=7\n"), heap + "useresidentmem=7\n");
}

/// "[config]" after step "5.36", but for the heap.
std::string locktable536(const std::string& lines) {
  const std::string head = "[config]\nimplheap=131072\n";
  return behind(head, converted("5.36", "[config]\nimplheap=,131072\n" + lines));
}

TEST_F(Step536, TakesImplheapsSecondFieldWhetherItHasOneOrNot) {
  EXPECT_EQ(converted("5.36", "[config]\nimplheap=200000\nlocksiz=1179648\n"),
            "[config]\nimplheap=131072\nlocksiz=1179648\n");
  EXPECT_EQ(converted("5.36", "[config]\nimplheap=1,200000\nlocksiz=1179648\n"),
            "[config]\nimplheap=200000\nlocksiz=1179648\n");
  EXPECT_EQ(converted("5.36", "[config]\nlocksiz=1179648\n"), "[config]\nlocksiz=1179648\nimplheap=131072\n");
}

TEST_F(Step536, MovesTheLockTablesShortfallIntoGmheapIn32Bits) {
  EXPECT_EQ(locktable536("locksiz=1048576\ngmheap=3000\n"), "locksiz=1179648\ngmheap=3128\n");
  EXPECT_EQ(locktable536("locksiz=1179647\ngmheap=3000 kb\n"), "locksiz=1179648\ngmheap=3000\n");
  EXPECT_EQ(locktable536("locksiz=x\ngmheap=0\n"), "locksiz=1179648\ngmheap=1152\n");
  // 1179648 + 2147483648 wraps to -2146304000, and that divided by 1024 is -2096000.
  EXPECT_EQ(locktable536("locksiz=-2147483648\ngmheap=0\n"), "locksiz=1179648\ngmheap=-2096000\n");
}

TEST_F(Step536, AddsAMissingGmheapAndRaisesASmallOneBesideAMissingLockTable) {
  EXPECT_EQ(locktable536("locksiz=1\n"), "locksiz=1179648\ngmheap=3200\n");
  EXPECT_EQ(locktable536(""), "locksiz=1179648\ngmheap=3200\n");
  EXPECT_EQ(locktable536("gmheap=3199\n"), "gmheap=3200\nlocksiz=1179648\n");
  EXPECT_EQ(locktable536("gmheap=3201 kb\n"), "gmheap=3201 kb\nlocksiz=1179648\n");
}

TEST_F(Step536, LeavesALargeLockTableAlone) {
  EXPECT_EQ(locktable536("locksiz=1179648\ngmheap=1\n"), "locksiz=1179648\ngmheap=1\n");
  EXPECT_EQ(locktable536("locksiz=2000000\n"), "locksiz=2000000\n");
}

TEST_F(Step536, LosesTheImplheapThatStep535HasKept) {
  given("[config]\nimplheap=100000,300000\nlocksiz=1179648\n[Startup]\n");
  const std::string before = converted("5.35", lines());
  EXPECT_EQ(before, "[config]\nimplheap=300000\nlocksiz=1179648\n[Startup]\nWebServer=ON,8972\n");
  EXPECT_EQ(converted("5.36", before), "[config]\nimplheap=131072\nlocksiz=1179648\n[Startup]\nWebServer=ON,8972\n");
}

}  // namespace

}  // namespace tolvane::test
