#include <random>
#include <vector>

#include "document/entries.h"
#include "document/fields.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

class Step541 : public StoreTest {};

const std::string defaults = "[Journal]\nJournalHalt=0\nNewDatabaseDefault=1\nJournalPurge=,2\nTransNumKillJrn=1000\n";

/// What the step makes of lines without journal settings.
std::string step541(const std::string& lines) { return behind(defaults, converted("5.41", "[Journal]\n" + lines)); }

TEST_F(Step541, WritesTheJournalDefaults) {
  EXPECT_EQ(converted("5.41", "[Miscellaneous]\n[Startup]\n"), "[Miscellaneous]\n[Startup]\n" + defaults);
}

TEST_F(Step541, GathersTheJournalSettings) {
  EXPECT_EQ(
      converted("5.41",
                "[Miscellaneous]\nJrnlNewGlo=0\nJournalHalt=1\n[Startup]\nTransNumKillJrn\nJournalPurge=30\n"
                "[Journal]\nJournalHalt=x\n"),
      "[Miscellaneous]\n[Startup]\n[Journal]\nJournalHalt=x\nJournalHalt=1\nNewDatabaseDefault=0\nJournalPurge=30\n"
      "TransNumKillJrn=\n");
}

std::string purge(const std::string& value) {
  const std::string result = converted("5.41", "[Startup]\nJournalPurge=" + value + "\n");
  const std::size_t begin = result.find("\nJournalPurge=") + 14;
  return result.substr(begin, result.find('\n', begin) - begin);
}

TEST_F(Step541, ReplacesAnUnusablePurgeRuleBy100) {
  EXPECT_EQ(purge("0"), "100");
  EXPECT_EQ(purge("07"), "100");
  EXPECT_EQ(purge("101"), "100");
  EXPECT_EQ(purge(""), "100");
  EXPECT_EQ(purge("30"), "30");
  EXPECT_EQ(purge("100,5"), "100,5");
  EXPECT_EQ(purge("-7"), "-7");
  EXPECT_EQ(purge("never"), "never");
  EXPECT_EQ(purge("4294967297"), "4294967297") << "its low 32 bits are 1";
}

TEST_F(Step541, CountsTheDdpServersAsPorts) {
  const std::string servers = "[DSM-DDP]\nNetIsDDP_1=a\nNetIsDDP_2=b\n";
  EXPECT_EQ(step541(servers + "[config]\nLegacyNetConn=8,2,1012,0,0,0\n[Net]\nmaxdsmport=0\n"),
            servers + "[config]\nLegacyNetConn=8,2,1012,2,0,0\n[Net]\nmaxdsmport=2\n");
  EXPECT_EQ(step541(servers + "[config]\nLegacyNetConn=8\n[Net]\n"),
            servers + "[config]\nLegacyNetConn=8,,,2\n[Net]\n");
}

TEST_F(Step541, KeepsAPortCountThatIsThere) {
  const std::string lines = "[DSM-DDP]\nNetIsDDP_1=a\n[config]\nLegacyNetConn=8,2,1012,3,0,0\n[Net]\nmaxdsmport=0\n";
  EXPECT_EQ(step541(lines), lines);
}

TEST_F(Step541, CountsAHostAsOnePort) {
  const std::string host = "[DSM-DDP]\nDdpHost=h\n";
  EXPECT_EQ(step541(host + "[config]\nLegacyNetConn=0,0,0,x\n[Net]\nmaxdsmport=0\n"),
            host + "[config]\nLegacyNetConn=0,0,0,1\n[Net]\nmaxdsmport=1\n");
  const std::string none = "[DSM-DDP]\nDdpHost=\nNetIsDDP_2=b\n[config]\nLegacyNetConn=0,0,0,0\n[Net]\nmaxdsmport=0\n";
  EXPECT_EQ(step541(none), none);
}

TEST_F(Step541, SetsTheNetworksPortsAlsoWithoutASummary) {
  EXPECT_EQ(step541("[DSM-DDP]\nNetIsDDP_1=a\n[Net]\nmaxdsmport=0\n"),
            "[DSM-DDP]\nNetIsDDP_1=a\n[Net]\nmaxdsmport=1\n");
}

/// What is left of the mapping section of a namespace "USER".
std::string mappings(const std::string& lines) {
  const std::string head = "[Namespaces]\nNsp_1=USER,x\n";
  return behind(head, step541(head + "[NspMap.USER]\n" + lines));
}

TEST_F(Step541, DropsMappingsWithTheirSubscriptMappingsAndClosesTheGaps) {
  EXPECT_EQ(mappings("GloMap_1=oddDEF,A\nGloMap_2=Data,B\nGloMap_3=mdd,C\nGloSLM_oddDEF_1=x\nGloSLM_oddDEF_2=y\n"),
            "[NspMap.USER]\nGloMap_1=Data,B\n");
}

TEST_F(Step541, KeepsTheOrderOfTheLines) {
  EXPECT_EQ(mappings("GloMap_3=c\nRouMap_1=r\nGloMap_2=odd\nGloMap_1=a\n; note\nGloMap_4=d,e=f\n"),
            "[NspMap.USER]\nGloMap_2=c\nRouMap_1=r\nGloMap_1=a\n; note\nGloMap_3=d,e=f\n");
}

TEST_F(Step541, KeepsSubscriptMappingsOfAGlobalWithAnEqualsSignWhichNoKeyHolds) {
  EXPECT_EQ(mappings("GloMap_1=odd=x,1\nGloMap_2=a\nGloSLM_odd=x_1=5\n"),
            "[NspMap.USER]\nGloMap_1=a\nGloSLM_odd=x_1=5\n");
}

TEST_F(Step541, DeletesASectionOfDroppedMappingsOnly) {
  EXPECT_EQ(mappings("GloMap_1=odd,x\nGloMap_2=rINDEXCLASS\nGloMap_3=mdd\n[B]\n"), "[B]\n");
  EXPECT_EQ(mappings("GloMap_1=oddX,x\n"), "");
}

TEST_F(Step541, DropsOddByPrefixAndTheOthersExactly) {
  const std::string kept =
      "[NspMap.USER]\nGloMap_1=rINDEXCLASSX,a\nGloMap_2=mddx\nGloMap_3=od\nGloMap_4=Odd\nGloMap_5\n";
  EXPECT_EQ(mappings(kept.substr(14)), kept);
  EXPECT_EQ(mappings("GloMap_1=oddX,a\nGloMap_2=b\n"), "[NspMap.USER]\nGloMap_1=b\n");
}

TEST_F(Step541, SkipsASectionWithoutAFirstMapping) {
  const std::string kept = "[NspMap.USER]\nGloMap_2=oddX\n";
  EXPECT_EQ(mappings(kept.substr(14)), kept);
  EXPECT_EQ(mappings(""), "[NspMap.USER]\n");
}

TEST_F(Step541, StopsAtGaps) {
  EXPECT_EQ(mappings("GloMap_1=a\nGloMap_3=odd\n"), "[NspMap.USER]\nGloMap_1=a\nGloMap_3=odd\n");
  EXPECT_EQ(mappings("GloMap_1=odd\nGloMap_3=b\nGloSLM_odd_2=x\n"), "[NspMap.USER]\nGloMap_3=b\nGloSLM_odd_2=x\n");
  const std::string hidden = "[Namespaces]\nNsp_2=USER\n[NspMap.USER]\nGloMap_1=odd\n";
  EXPECT_EQ(step541(hidden), hidden);
}

TEST_F(Step541, TakesALineWithAnEmptyKeyForTheEndOfTheSection) {
  EXPECT_EQ(mappings("=x\nGloMap_1=a\n[B]\n"), "=x\nGloMap_1=a\n[B]\n");
  EXPECT_EQ(mappings("GloMap_1=odd\n=x\ny=1\n"), "=x\ny=1\n");
  EXPECT_EQ(mappings("GloMap_1=odd\n=x\nNsp_2=B\n[NspMap.B]\nGloMap_1=odd\ny=1\n"), "=x\nNsp_2=B\n[NspMap.B]\ny=1\n")
      << "a namespace that joins the list is cleaned, too";
}

TEST_F(Step541, DeletesTheSecondOfTwoMappingsOfOneNumber) {
  EXPECT_EQ(mappings("GloMap_1=odd\nGloMap_2=a\nGloMap_2=b\nx=1\n"), "[NspMap.USER]\nGloMap_1=a\nx=1\n");
  EXPECT_EQ(mappings("GloMap_1=odd\nGloMap_1=a\nx=1\n"), "[NspMap.USER]\nx=1\n");
}

TEST_F(Step541, CleansEachNamespaceUpToTheFirstGap) {
  EXPECT_EQ(
      step541(
          "[NspMap.B]\nGloMap_1=odd\nx=1\n[Namespaces]\nNsp_1=A\nNsp_2=B,\nNsp_3=B\nNsp_4\n[NspMap.]\nGloMap_1=mdd\n"),
      "[NspMap.B]\nx=1\n[Namespaces]\nNsp_1=A\nNsp_2=B,\nNsp_3=B\nNsp_4\n");
}

TEST_F(Step541, RenumbersManyMappings) {
  std::string before;
  std::string after = "[NspMap.USER]\n";
  for (int n = 1; n <= 40; ++n) {
    const bool drop = n % 3 == 1;
    before += "GloMap_" + std::to_string(n) + (drop ? "=odd\n" : "=g" + std::to_string(n) + "\n");
    if (!drop) after += "GloMap_" + std::to_string(n - (n + 2) / 3) + "=g" + std::to_string(n) + "\n";
  }
  EXPECT_EQ(mappings(before), after);
}

// The clean-up as it reads, each look-up from the top: what the step does faster.
void dropliterally(const std::string& section, int k) {
  const auto entry = [&](const std::string& key) { return find(section, key); };
  const auto mapping = [](int n) { return "GloMap_" + std::to_string(n); };
  const std::string prefix = "GloSLM_" + std::string(getfield(getvalue(section, mapping(k)), 1, ',')) + "_";
  for (int n = 1; entry(prefix + std::to_string(n)) != nullptr; ++n) delentry(section, prefix + std::to_string(n));
  delentry(section, mapping(k));
  int i = k;
  for (; entry(mapping(i + 1)) != nullptr; ++i) renametag(section, mapping(i + 1), mapping(i));
  delentry(section, mapping(i));
}

void cleanliterally(const std::string& section) {
  for (int k = 1;;) {
    const Line* const line = find(section, Text("GloMap_", k));
    if (line == nullptr) return;
    const Text global = getfield(valueof(*line), 1, ',');
    if (global.view().starts_with("odd") || global == "rINDEXCLASS" || global == "mdd") {
      dropliterally(section, k);
    } else {
      ++k;
    }
  }
}

void cleanallliterally() {
  for (int n = 1; const Line* const line = find("[Namespaces]", Text("Nsp_", n)); ++n) {
    const std::string section = "[NspMap." + std::string(getfield(valueof(*line), 1, ',')) + "]";
    if (find(section, "GloMap_1") == nullptr) continue;
    cleanliterally(section);
    Text key;
    getnexttagname(section, key);
    if (key.empty()) delsection(section);
  }
}

/// A line of a mapping section or of the list of namespaces, with duplicates and gaps.
std::string randomline(std::mt19937& random) {
  const std::vector<std::string> globals{"odd", "a", "mdd", "b", "oddx"};
  const std::string& global = globals[random() % globals.size()];
  const std::string number = std::to_string(1 + random() % 6);
  switch (random() % 12) {
    case 0:
      return "=x\n";
    case 1:
      return "Nsp_" + number + "=" + "MNO"[random() % 3] + ",x\n";
    case 2:
    case 3:
      return "GloSLM_" + global + "_" + number + "\n";
    case 4:
      return "GloMap_" + number + "\n";
    default:
      return "GloMap_" + number + "=" + global + ",x\n";
  }
}

std::string randomsections(std::mt19937& random) {
  std::string text = "[Namespaces]\n";
  // A section may be named again after it has got the lines of another one.
  for (int n = 2 + static_cast<int>(random() % 4); n > 0; --n) {
    text += "Nsp_" + std::to_string(n) + "=" + "MNO"[random() % 3] + "\n";
  }
  for (const char* header :
       {"[NspMap.N]\n", "[NspMap.M]\n", "[NspMap.O]\n", "[NspMap.N]\nkept=1\n", "[Namespaces]\n"}) {
    if (random() % 4 == 0) continue;
    text += header;
    for (std::size_t line = random() % 14; line > 0; --line) text += randomline(random);
  }
  return text;
}

TEST_F(Step541, DoesWithRandomSectionsWhatTheLiteralProcedureDoes) {
  std::mt19937 random(1);
  int changed = 0;
  for (int round = 0; round < 10000; ++round) {
    const std::string text = randomsections(random);
    given(text);
    cleanallliterally();
    const std::string expected = lines();
    changed += text == expected ? 0 : 1;
    ASSERT_EQ(step541(text), expected) << text;
  }
  EXPECT_GT(changed, 5000);
}

TEST_F(Step541, CleansThousandsOfMappings) {
  std::string before;
  for (int n = 1; n <= 5000; ++n) before += "GloMap_" + std::to_string(n) + (n % 2 == 0 ? "=odd\n" : "=a\n");
  std::string after = "[NspMap.USER]\n";
  for (int n = 1; n <= 2500; ++n) after += "GloMap_" + std::to_string(n) + "=a\n";
  EXPECT_EQ(mappings(before), after);
}

}  // namespace

}  // namespace tolvane::test
