// How the work of a conversion grows with its file: counted in basic blocks, of which each look at a line is at least
// one. Where keys are unique it grows with the lines, and whatever they are never with more than lines times lines.
#include <algorithm>
#include <string>

#include "document/edits.h"
#include "document/entries.h"
#include "fuzz/work.h"
#include "ladder/convertconfig.h"
#include "legacy/convertnetwork.h"
#include "legacy/convertsystem.h"
#include "tests/support/store.h"

namespace tolvane::test {

namespace {

/// Lines for 1, 2, ...: "#" stands for the number, "@" for half of it. What follows the first "|" is written for even
/// numbers in place of what stands before it.
std::string lines(int count, const std::string& pattern) {
  const std::size_t bar = pattern.find('|');
  std::string result;
  for (int n = 1; n <= count; ++n) {
    const bool second = bar != std::string::npos && n % 2 == 0;
    for (const char character : second ? pattern.substr(bar + 1) : pattern.substr(0, bar)) {
      if (character == '#' || character == '@') {
        result += std::to_string(character == '#' ? n : (n + 1) / 2);
      } else {
        result += character;
      }
    }
    result += '\n';
  }
  return result;
}

void climbladder() { convertconfig("3.11"); }
void climbnetwork() { convertnetwork("2.03"); }
void climbsystem() { convertsystem("2.0"); }

/// A kind of file, of any size, and what converts it.
struct Family {
  std::string name;
  void (*convert)();
  std::string head;
  std::string pattern;
  std::string secondpattern;
};

void PrintTo(const Family& family, std::ostream* out) { *out << family.name; }

std::string config(const std::string& platform) {
  return "[ConfigFile]\nVersion=3.11\n[config]\noverview=" + platform + "~UNIX~3.11\n";
}

const std::string ubuntu = config("X86-64(Ubuntu Linux)");
const std::string user = ubuntu + "[Namespaces]\nNsp_1=USER\n[NspMap.USER]\n";

// clang-format off
const Family unique[] = {
    {"DroppedMappings",                climbladder,  user,                                 "GloMap_#=g#,DATA|GloMap_#=odd#,DATA",            ""},
    {"DroppedSubscriptMappings",       climbladder,  user,                                 "GloMap_#=g#,DATA|GloMap_#=odd#,DATA",            "GloSLM_odd#_1=x"},
    {"KeptMappings",                   climbladder,  user,                                 "GloMap_#=g#,DATA",                               ""},
    {"NamespacesOfDroppedMappings",    climbladder,  ubuntu + "[Namespaces]\n",            "Nsp_#=N#",                                       "[NspMap.N#]\nGloMap_1=odd"},
    {"Databases",                      climbladder,  ubuntu + "[Datasets]\n",              "DataSet_#=D#,d,,0,P,0,0",                        ""},
    {"Applications",                   climbladder,  ubuntu + "[ZPG.Applications]\n",      "ZPGApp_#=/a#,a,1,1,,900,1,,USER,1,,,,0",         ""},
    {"Drives",                         climbladder,  config("Tru64 UNIX") + "[MagTape]\n", "Drive_#=47~/dev/nrmt0h",                         ""},
    {"Servers",                        climbladder,  ubuntu + "[Data Servers]\n",          "NetIsUDP_#=s#,x",                                ""},
    {"HugeUnknownSection",             climbladder,  ubuntu,                               "key#=x",                                         ""},
    {"UnknownSections",                climbladder,  ubuntu,                               "[s#]",                                           ""},
    {"LegacyGlobalMappings",           climbnetwork, "[NamespGloMap]\n",                   "NspGloMap~U~#=g~SYS$M~a~b~c~d",                  ""},
    {"LegacyMappingsOfManyNamespaces", climbnetwork, "[NamespGloMap]\n",                   "NspGloMap~U#~1=g~SYS$M~a~b~c~d",                 ""},
    {"LegacySubscriptMappings",        climbnetwork, "[NamespSLM]\n",                      "NspSLM~U~g#~1=a~b~c~d~e",                        ""},
    {"LegacyRoutineMappings",          climbnetwork, "[NamespRouMap]\n",                   "NspRouMap~U~#=a~b",                              ""},
    {"LegacyServers",                  climbnetwork, "[Net]\n",                            "NetIsEther_#=a~b~c",                             ""},
    {"LegacyNamespaces",               climbnetwork, "[Namespace]\n",                      "Nsp~#=a~b~c",                                    ""},
    {"LegacyDatabases",                climbnetwork, "[DataSets]\n",                       "DataSet_#=COMMON,x,,0,P,0|DataSet_#=D,x,,0,P,0", ""},
    {"LegacyDevices",                  climbsystem,  "[Devices]\n",                        "Device_#=a~b~c~C-NT CONSOLE",                    ""},
};

const Family duplicated[] = {
    {"MappingsOfOneNumber",     climbladder,  user,                            "GloMap_1=g#|GloMap_1=odd#", ""},
    {"EachMappingTwice",        climbladder,  user,                            "GloMap_@=g#|GloMap_@=odd#", ""},
    {"EachDroppedMappingTwice", climbladder,  user,                            "GloMap_@=odd",              ""},
    {"OneSubscriptMapping",     climbladder,  user,                            "GloMap_#=odd",              "GloSLM_odd_1=x"},
    {"OneNamespace",            climbladder,  ubuntu + "[Namespaces]\n",       "Nsp_#=N",                   "[NspMap.N]\nGloMap_1=odd\n=x"},
    {"OneApplication",          climbladder,  ubuntu + "[ZPG.Applications]\n", "ZPGApp_1=a",                ""},
    {"OneLegacyNamespace",      climbnetwork, "[Namespace]\n",                 "Nsp~1=a~b",                 ""},
    {"OneLegacyMapping",        climbnetwork, "[NamespGloMap]\n",              "NspGloMap~U~1=g~SYS$M",     ""},
    {"OneLegacySection",        climbnetwork, "",                              "[NamespGloMap]\n=x",        ""},
};
// clang-format on

/// The lines of a file of that size.
std::string file(const Family& family, int count) {
  const bool second = !family.secondpattern.empty();
  return family.head + lines(count, family.pattern) + (second ? lines(count, family.secondpattern) : "");
}

/// The blocks that the conversion of a file takes.
std::uint64_t work(const Family& family, const std::string& file) {
  given(file);
  testing::internal::CaptureStdout();  // a platform's warning
  const std::uint64_t before = workdone();
  family.convert();
  const std::uint64_t done = workdone() - before;
  testing::internal::GetCapturedStdout();
  return done;
}

std::uint64_t countlines(const std::string& file) {
  return static_cast<std::uint64_t>(std::count(file.begin(), file.end(), '\n'));
}

/// What each line may cost: the steps look at it some hundred times and change it in several.
std::uint64_t proportional(std::uint64_t lines) { return 200000 + 4000 * lines; }

class Growth : public StoreTest, public testing::WithParamInterface<Family> {};
class GrowthOfUnique : public Growth {};
class GrowthOfDuplicated : public Growth {};

TEST_P(GrowthOfUnique, IsThatOfTheLines) {
  const std::string small = file(GetParam(), 1000);
  const std::uint64_t smallwork = work(GetParam(), small);
  EXPECT_GT(smallwork, countlines(small)) << "the work is counted";
  EXPECT_LE(smallwork, proportional(countlines(small)));
  EXPECT_LE(work(GetParam(), file(GetParam(), 2000)), 2 * smallwork + smallwork / 4);
}

TEST_P(GrowthOfDuplicated, IsNotMoreThanThatOfLinesTimesLines) {
  const std::string small = file(GetParam(), 500);
  const std::uint64_t smallwork = work(GetParam(), small);
  EXPECT_GT(smallwork, countlines(small)) << "the work is counted";
  EXPECT_LE(smallwork, proportional(countlines(small)) + 8 * countlines(small) * countlines(small));
  EXPECT_LE(work(GetParam(), file(GetParam(), 1000)), 4 * smallwork + smallwork / 4);
}

std::string nameof(const testing::TestParamInfo<Family>& family) { return family.param.name; }

INSTANTIATE_TEST_SUITE_P(Work, GrowthOfUnique, testing::ValuesIn(unique), nameof);
INSTANTIATE_TEST_SUITE_P(Work, GrowthOfDuplicated, testing::ValuesIn(duplicated), nameof);

}  // namespace

}  // namespace tolvane::test
