// Step "3.12" of network files.
#include <random>

#include "document/ends.h"
#include "document/entries.h"
#include "document/fields.h"
#include "legacy/convertnetwork.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Network312 : public StoreTest {};

std::string step312(std::string_view before) { return converted(networkladder, "3.12", before); }

const std::string temporary = "[Datasets]\nDataSet_1=VELMTEMP,velmtemp,,0,P,0,0\n";

/// What step "3.12" leaves of lines before the database that it adds.
std::string network312(const std::string& lines) {
  const std::string result = step312(lines);
  const std::size_t begin = result.size() < temporary.size() ? 0 : result.size() - temporary.size();
  EXPECT_EQ(result.substr(begin), temporary);
  return result.substr(0, begin);
}

TEST_F(Network312, MovesTheServers) {
  EXPECT_EQ(network312("[Net]\nNetIsEther_1=a~b~c~d~e~f\nNetIsUdp_1=a~b\nNetIsDDP_1=a~b\nDDPVolSet_1=a~b\n"
                       "DDPVolumeAndUci_1=a~b\nDdpHost=h~i\nNetIsEther_2\n"),
            "[Net]\n[Data Servers]\nNetIsEther_1=a,b,c,d,0,f\nNetIsEther_2=,,,,0\nNetIsUDP_1=a,b,,,,0\n"
            "[DSM-DDP]\nNetIsDDP_1=a,b\nDDPVolSet_1=a~b\nDDPVolumeAndUci_1=a,b\nDdpHost=h~i\n");
}

TEST_F(Network312, PadsUdpServersToSixFields) {
  EXPECT_EQ(network312("[Net]\nNetIsUdp_1=a~b\nNetIsUdp_3=c\nNetIsUDP_1=d\n"),
            "[Net]\nNetIsUdp_3=c\nNetIsUDP_1=d\n[Data Servers]\nNetIsUDP_1=a,b,,,,0\n");
}

TEST_F(Network312, MovesTheFirstOfTwoServersOfANumber) {
  EXPECT_EQ(network312("[Net]\nNetIsEther_1=a\nNetIsEther_1=b\n"),
            "[Net]\nNetIsEther_1=b\n[Data Servers]\nNetIsEther_1=a,,,,0\n");
}

TEST_F(Network312, CutsDatabasesToFiveFields) {
  EXPECT_EQ(step312("[DataSets]\nDataSet_1=a,b,c,d,e,f\nDataSet_2=a,b,c,d,e\nDataSet_3=a\nDataSet_4\n"
                    "DataSet_5=a,b,c,d,e,\nDataSet_7=a,b,c,d,e,f\n"),
            "[Datasets]\nDataSet_1=a,b,c,d,e\nDataSet_2=a,b,c,d,e\nDataSet_3=a\nDataSet_4\nDataSet_5=a,b,c,d,e\n"
            "DataSet_7=a,b,c,d,e,f\nDataSet_6=VELMTEMP,velmtemp,,0,P,0,0\n");
}

TEST_F(Network312, KeepsADatabaseOfFewerThanFiveFieldsWhole) {
  EXPECT_EQ(step312("[DataSets]\nDataSet_1=a,b,c,d\n"),
            "[Datasets]\nDataSet_1=a,b,c,d\nDataSet_2=VELMTEMP,velmtemp,,0,P,0,0\n");
}

TEST_F(Network312, MovesTheNamespaces) {
  EXPECT_EQ(step312("[Datasets]\n[Namespace]\nNsp~1=a~b~c\nNsp~3=lost\nx=1\n"),
            "[Datasets]\nDataSet_1=VELMTEMP,velmtemp,,0,P,0,0\n[Namespaces]\nNsp_1=a,b,c,,,,VELMTEMP\n");
}

TEST_F(Network312, LeavesNamespaceLinesFromAnEmptyKeyOn) {
  EXPECT_EQ(step312("[Datasets]\n[A]\n[Namespace]\nNsp~1=a\ny=0\n=x\ny=1\n"),
            "[Datasets]\nDataSet_1=VELMTEMP,velmtemp,,0,P,0,0\n[A]\n=x\ny=1\n[Namespaces]\nNsp_1=a,,,,,,VELMTEMP\n");
}

TEST_F(Network312, MovesGlobalMappings) {
  EXPECT_EQ(
      network312("[NamespGloMap]\nNspGloMap~USER~G=a~b~c~d~e~f~g\nNspGloMap~USER~H=a~b\nNspGloMap~A~G=a~b~c~d~e~\n"
                 "NspGloMap~USER~I~more\n"),
      "[NspMap.USER]\nGloMap_G=a,b,c,d,e,f~g\nGloMap_H=a,b\nGloMap_I=\n[NspMap.A]\nGloMap_G=a,b,c,d,e,\n");
}

TEST_F(Network312, DropsMappingsOfAnotherWord) {
  EXPECT_EQ(
      network312("[NamespGloMap]\nNspGlomap~A~G=a\nx=1\n[NamespSLM]\nNspGloMap~A~G~1=a\n[NamespRouMap]\n; note\n"), "");
}

TEST_F(Network312, TakesMissingPartsOfAMappingForEmpty) {
  EXPECT_EQ(network312("[NamespGloMap]\nNspGloMap=a\nNspGloMap~B=b\n[NamespSLM]\nNspSLM~B~G=c\n"),
            "[NspMap.]\nGloMap_=a\n[NspMap.B]\nGloMap_=b\nGloSLM_G_=c\n");
}

TEST_F(Network312, MovesSubscriptMappings) {
  EXPECT_EQ(network312("[NamespSLM]\nNspSLM~USER~G~(1)=a~b~c~d~e\nNspSLM~USER~G~2=a~b~c\nNspSLM~USER~G~3~x=a~b~c~\n"),
            "[NspMap.USER]\nGloSLM_G_(1)=a~b~c~d,e\nGloSLM_G_2=a~b~c\nGloSLM_G_3=a~b~c~\n");
}

TEST_F(Network312, MovesRoutineMappings) {
  EXPECT_EQ(network312("[NamespRouMap]\nNspRouMap~USER~R*=a~b~~c\nNspRouMap~USER~S\n"),
            "[NspMap.USER]\nRouMap_R*=a,b,,c\nRouMap_S=\n");
}

TEST_F(Network312, CollectsTheMappingsOfANamespaceInOneSection) {
  EXPECT_EQ(network312("[NamespGloMap]\nNspGloMap~B~G=1\nNspGloMap~A~G=2\nNspGloMap~B~H=3\n[NamespRouMap]\n"
                       "NspRouMap~A~R=4\n"),
            "[NspMap.B]\nGloMap_G=1\nGloMap_H=3\n[NspMap.A]\nGloMap_G=2\nRouMap_R=4\n");
}

TEST_F(Network312, LeavesMappingLinesFromAnEmptyKeyOn) {
  EXPECT_EQ(network312("[A]\n[NamespGloMap]\nNspGloMap~B~G=1\n=x\nNspGloMap~B~H=2\n"),
            "[A]\n=x\nNspGloMap~B~H=2\n[NspMap.B]\nGloMap_G=1\n");
  EXPECT_EQ(network312("[A]\n[NamespGloMap]\n[NamespSLM]\n[NamespRouMap]\n"), "[A]\n");
}

TEST_F(Network312, RenamesTheClientsSystemName) {
  EXPECT_EQ(network312("[Net]\nthisco=here\nx=1\n"), "[Net]\nx=1\nCliSysName=here\n");
}

TEST_F(Network312, EndsForAServerThatPaddingMakesTooLong) {
  given("[Net]\nNetIsUdp_1=" + std::string(494, 'a') + "\n");
  EXPECT_NO_THROW(convertnetwork("3.11")) << "511 characters";
  given("[Net]\nNetIsUdp_1=" + std::string(495, 'a') + "\n");
  EXPECT_THROW(convertnetwork("3.11"), TextTooLong);
}

// The moves of the step as they read, each look-up from the top and each entry added by itself: what it does faster.
void moveserversliterally() {
  for (int n = 1; find("[Net]", Text("NetIsEther_", n)) != nullptr; ++n) {
    const Text key{"NetIsEther_", n};
    Text value;
    changechar(getvalue("[Net]", key), '~', ',', value);
    delentry("[Net]", key);
    saveentry("[Data Servers]", key, replacefield(value, 5, ',', "0"));
  }
}

void moveroutinesliterally() {
  while (find("[NamespRouMap]") != nullptr) {
    Text key;
    getnexttagname("[NamespRouMap]", key);
    if (key.empty()) break;
    Text value;
    changechar(getvalue("[NamespRouMap]", key), '~', ',', value);
    delentry("[NamespRouMap]", key);
    if (getfield(key, 1, '~') != "NspRouMap") continue;
    const Text section{"[NspMap.", getfield(key, 2, '~'), ']'};
    saveentry(section, Text("RouMap_", getfield(key, 3, '~')), value);
  }
  delentry("[NamespRouMap]");
}

std::string randomnetwork(std::mt19937& random) {
  std::string text;
  for (const char* header : {"[NspMap.A]\n", "[Net]\n", "[Data Servers]\n", "[NamespRouMap]\n", "[NspMap.A]\n"}) {
    if (random() % 4 == 0) continue;
    text += header;
    for (std::size_t line = random() % 8; line > 0; --line) {
      const std::string number = std::to_string(1 + random() % 4);
      switch (random() % 8) {
        case 0:
          text += "x=" + number + "\n";
          break;
        case 1:
          text += random() % 2 == 0 ? "=x\n" : "NspRouMap~B~" + number + "\n";
          break;
        case 2:
          text += "Other~A~1=" + number + "\n";
          break;
        case 3:
        case 4:
          text += "NetIsEther_" + number + "=a~" + number + "\n";
          break;
        default:
          text += "NspRouMap~" + std::string(1, "AB"[random() % 2]) + "~" + number + "=u~v\n";
      }
    }
  }
  return text;
}

TEST_F(Network312, DoesWithRandomSectionsWhatTheLiteralProcedureDoes) {
  std::mt19937 random(1);
  for (int round = 0; round < 5000; ++round) {
    const std::string text = randomnetwork(random);
    given(text);
    moveserversliterally();
    moveroutinesliterally();
    saveentry("[Datasets]", "DataSet_1", "VELMTEMP,velmtemp,,0,P,0,0");
    const std::string expected = lines();
    ASSERT_EQ(step312(text), expected) << text;
  }
}

}  // namespace

}  // namespace tolvane::test
