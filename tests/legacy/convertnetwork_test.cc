// The ladder of network files, and its steps but "3.12".
#include "legacy/convertnetwork.h"

#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Network204 : public StoreTest {};
class Network30 : public StoreTest {};
class Network311 : public StoreTest {};
class NetworkLadder : public StoreTest {};

std::string network(std::string_view version, std::string_view before) {
  return converted(networkladder, version, before);
}

TEST_F(Network204, AppendsEthernetServersWithAnEmptySecondField) {
  EXPECT_EQ(
      network("2.04", "[Net]\nNetIsEther_1=a~b~c~d\nNetIsEther_2=a\nNetIsEther_4=x\n[B]\n"),
      "[Net]\nNetIsEther_1=a~b~c~d\nNetIsEther_2=a\nNetIsEther_4=x\nNetIsEther_1=a~~b~c\nNetIsEther_2=a~~~\n[B]\n");
  EXPECT_EQ(network("2.04", "[Net]\nNetIsEther_1\n"), "[Net]\nNetIsEther_1\nNetIsEther_1=~~~\n");
  EXPECT_EQ(network("2.04", "[B]\n"), "[B]\n");
}

TEST_F(Network30, RenamesTheSystemDirectory) {
  EXPECT_EQ(network("3.0",
                    "[DataSets]\na=SYS$MSYS$C\n[Namespace]\nb=xSYS$C\n[NamespGloMap]\nc=SYS$M,SYS$M\n[NamespRouMap]\n"
                    "SYS$M=sys$m\n[NamespSLM]\nd=SYS$M\n"),
            "[DataSets]\na=VELMSYSVELMSYS\n[Namespace]\nb=xVELMSYS\n[NamespGloMap]\nc=VELMSYS,VELMSYS\n[NamespRouMap]\n"
            "SYS$M=sys$m\n[NamespSLM]\nd=SYS$M\n");
}

TEST_F(Network311, DropsTwoDatabasesAndMovesRenumberedOnesToTheEnd) {
  EXPECT_EQ(network("3.11", "[DataSets]\nDataSet_1=COMMON,a\nDataSet_2=USER,b\nDataSet_3=UTILITY,c\n"),
            "[DataSets]\nDataSet_1=USER,b\nDataSet_2=VELMLIB,velmlib,,0,P,0\n");
  EXPECT_EQ(network("3.11", "[DataSets]\nDataSet_1=A\nDataSet_2=COMMON\nDataSet_3=B,x=y\nx=1\nDataSet_4\n[C]\n"),
            "[DataSets]\nDataSet_1=A\nx=1\nDataSet_2=B,x=y\nDataSet_3=\nDataSet_4=VELMLIB,velmlib,,0,P,0\n[C]\n");
}

TEST_F(Network311, StopsAtTheFirstGapAndFillsIt) {
  EXPECT_EQ(network("3.11", "[DataSets]\nDataSet_1=A\nDataSet_3=COMMON\n"),
            "[DataSets]\nDataSet_1=A\nDataSet_3=COMMON\nDataSet_2=VELMLIB,velmlib,,0,P,0\n");
  EXPECT_EQ(network("3.11", ""), "[DataSets]\nDataSet_1=VELMLIB,velmlib,,0,P,0\n");
  EXPECT_EQ(network("3.11", "[DataSets]\nDataSet_1=Common\nDataSet_2=COMMONS\n"),
            "[DataSets]\nDataSet_1=Common\nDataSet_2=COMMONS\nDataSet_3=VELMLIB,velmlib,,0,P,0\n");
}

TEST_F(Network311, GivesNamespacesTheLibraryAndRenamesOneThatWasThere) {
  EXPECT_EQ(network("3.11", "[DataSets]\n[Namespace]\nNsp~1=a~b\nNsp~2=a~b~c~d~e~f~g\nother\n"),
            "[DataSets]\nDataSet_1=VELMLIB,velmlib,,0,P,0\n[Namespace]\nNsp~1=a~b~~~~VELMLIB\n"
            "Nsp~2=a~b~c~d~e~VELMLIB~g\nother=~~~~~VELMLIB\n");
  EXPECT_EQ(network("3.11", "[DataSets]\nDataSet_1=DRUVESQL,druvesql,druvesql\n[Namespace]\nNsp~1=DRUVESQL~x\n"),
            "[DataSets]\nDataSet_1=VELMLIB,velmlib,velmlib\nDataSet_2=VELMLIB,velmlib,,0,P,0\n"
            "[Namespace]\nNsp~1=VELMLIB~x~~~~VELMLIB\n");
}

TEST_F(NetworkLadder, RunsThreeStepsFor204) {
  given("[Net]\nNetIsEther_1=a~b~c\n[DataSets]\nDataSet_1=SYS$M,SYS$C\n[Namespace]\n");
  convertnetwork("2.04");
  EXPECT_EQ(
      lines(),
      "[Net]\n[Datasets]\nDataSet_1=VELMSYS,VELMSYS\nDataSet_2=VELMLIB,velmlib,,0,P\nDataSet_3=VELMTEMP,velmtemp,,0,P,0,0\n"
      "[Data Servers]\nNetIsEther_1=a,b,c,,0\n");
}

TEST_F(NetworkLadder, RunsAllStepsFor203AndLeavesTheSecondEthernetServer) {
  given("[Net]\nNetIsEther_1=a~b~c\n[DataSets]\nDataSet_1=SYS$M,SYS$C\n[Namespace]\n");
  convertnetwork("2.03");
  EXPECT_EQ(lines(),
            "[Net]\nNetIsEther_1=a~~b~c\n[Datasets]\nDataSet_1=VELMSYS,VELMSYS\nDataSet_2=VELMLIB,velmlib,,0,P\n"
            "DataSet_3=VELMTEMP,velmtemp,,0,P,0,0\n[Data Servers]\nNetIsEther_1=a,b,c,,0\n");
}

TEST_F(NetworkLadder, ChangesNothingForLaterAndUnknownVersions) {
  for (const char* version : {"3.12", "5.45", "", "3.05", "2.04\t"}) {
    given("[Net]\nNetIsEther_1=a\n[DataSets]\n");
    convertnetwork(version);
    EXPECT_EQ(lines(), "[Net]\nNetIsEther_1=a\n[DataSets]\n") << version;
  }
}

TEST_F(NetworkLadder, HasFourSteps) {
  const std::string_view versions[] = {"2.04", "3.0", "3.11", "3.12"};
  ASSERT_EQ(networkladder.size(), std::size(versions));
  for (std::size_t n = 0; n < std::size(versions); ++n) EXPECT_EQ(networkladder[n].version, versions[n]);
}

}  // namespace

}  // namespace tolvane::test
