#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Step50 : public StoreTest {};
class Step505 : public StoreTest {};
class Step52 : public StoreTest {};

TEST_F(Step50, FixesTheWebApplications) {
  const std::string result = converted("5.0", "[ZPG.Applications]\nZPGApp_1=/zpg/samples\n");
  EXPECT_EQ(result.find("[ZPG.Applications]\nZPGApp_1=/zpg/samples,,,,,,,,,,,,,,,1,,,0\nZPGApp_2=/zpg/user,"), 0U);
}

TEST_F(Step505, FixesTheAuditDatabase) {
  EXPECT_EQ(converted("5.0.5", "[Datasets]\nDataSet_1=VELMAUDIT,x\n"), "[Datasets]\nDataSet_1=VELMAUDIT,x,,,,0,1\n");
}

TEST_F(Step52, MovesTheServerLimitsOrTakes2ForThem) {
  EXPECT_EQ(converted("5.2", "[ECP]\nMaxServers=9\nx=1\n[config]\nMaxServers=4\nniceval=1\nLegacyNetConn=0\n"),
            "[ECP]\nx=1\n[config]\nMaxServers=4\nLegacyNetConn=0\nMaxServers=9\nMaxServerConn=2\n");
  EXPECT_EQ(converted("5.2", "[ECP]\nMaxServerConn\n[config]\n"),
            "[ECP]\n[config]\nMaxServers=2\nMaxServerConn=\nLegacyNetConn=0\n");
}

TEST_F(Step52, CountsThreeRunsUpToTheirGaps) {
  const std::string servers =
      "[DSM-DDP]\nNetIsDDP_1\nNetIsDDP_2=b\n[Data Servers]\nNetIsUDP_1=c\nNetIsEther_1=d\nNetIsEther_2=e\n"
      "NetIsEther_4=f\n";
  EXPECT_EQ(converted("5.2", servers + "[config]\n"),
            servers + "[config]\nMaxServers=2\nMaxServerConn=2\nLegacyNetConn=5\n");
  EXPECT_EQ(converted("5.2", servers + "[config]\nLegacyNetConn=4,x\n"),
            servers + "[config]\nLegacyNetConn=5\nMaxServers=2\nMaxServerConn=2\n");
}

TEST_F(Step52, CountsNothingWithoutLegacySections) {
  EXPECT_EQ(converted("5.2", "[config]\n"), "[config]\nMaxServers=2\nMaxServerConn=2\nLegacyNetConn=0\n");
}

TEST_F(Step52, KeepsACountOf8BesideFiveConnections) {
  const std::string servers =
      "[DSM-DDP]\nNetIsDDP_1=a\nNetIsDDP_2=b\n[Data Servers]\nNetIsUDP_1=c\nNetIsEther_1=d\nNetIsEther_2=e\n";
  EXPECT_EQ(converted("5.2", servers + "[config]\nLegacyNetConn=8\n"),
            servers + "[config]\nLegacyNetConn=8\nMaxServers=2\nMaxServerConn=2\n");
}

TEST_F(Step52, KeepsACountThatIsLargeEnough) {
  const std::string servers = "[DSM-DDP]\nNetIsDDP_1=a\n";
  EXPECT_EQ(converted("5.2", servers + "[config]\nLegacyNetConn=8\n"),
            servers + "[config]\nLegacyNetConn=8\nMaxServers=2\nMaxServerConn=2\n");
  EXPECT_EQ(converted("5.2", servers + "[config]\nLegacyNetConn=1 of 2\n"),
            servers + "[config]\nLegacyNetConn=1 of 2\nMaxServers=2\nMaxServerConn=2\n");
}

}  // namespace

}  // namespace tolvane::test
