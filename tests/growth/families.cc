#include "tests/growth/families.h"

#include <iterator>

#include "tests/growth/conversions.h"

namespace tolvane::test {

namespace {

std::string config(const std::string& platform) {
  return "[ConfigFile]\nVersion=3.11\n[config]\noverview=" + platform + "~UNIX~3.11\n";
}

const std::string tru64 = config("Tru64 UNIX") + "[MagTape]\n";
const std::string ubuntu = config("X86-64(Ubuntu Linux)");
const std::string user = ubuntu + "[Namespaces]\nNsp_1=USER\n[NspMap.USER]\n";
const std::string zpg = ubuntu + "[ZPG.Applications]\n";
const std::string datasets = ubuntu + "[Datasets]\n";

/// Long sections of settings: each with an entry that the steps look for, which stands before or behind the others.
std::vector<std::string> settings(bool behind) {
  constexpr const char* entries[][2] = {
      {"[config]",          "overview=X86-64(Ubuntu Linux)~UNIX~3.11"},
      {"[Startup]",         "EnableMultiUserClients=Y"               },
      {"[Net]",             "NSBackupMaster=x"                       },
      {"[SQL]",             "ddlNo303=x"                             },
      {"[SqlSysDatatypes]", "BIT=x"                                  },
      {"[Miscellaneous]",   "RelCommit=x"                            },
      {"[Language]",        "PhysicalCursor=x"                       },
      {"[Journal]",         "JournalHalt=x"                          },
      {"[Cluster]",         "ClusterCommAddr=x"                      },
      {"[Shadowing]",       "SRVport=x"                              },
      {"[ViewPoint]",       "VPSendResSz=x"                          },
      {"[DTMnetBIOS]",      "DTMcollation=x"                         },
      {"[ECP]",             "MaxServers=x"                           },
      {"[DSM-DDP]",         "DdpHost=x"                              },
      {"[Com]",             "Com=OFF"                                },
      {"[LAT]",             "ServiceName=x"                          },
      {"[Mvb]",             "x=x"                                    },
  };
  std::vector<std::string> parts;
  for (const auto& [header, entry] : entries) {
    parts.push_back(std::string(header) + '\n' + (behind ? "" : std::string(entry) + '\n'));
    parts.emplace_back("key#=x");
    if (behind) parts.push_back(std::string(entry) + '\n');
  }
  return parts;
}

// clang-format off
constexpr const char* netseries[] = {
    "NetIsEther_#=a~b", "NetIsUdp_#=a", "NetIsDDP_#=a", "DDPVolSet_#=a", "DDPVolumeAndUci_#=a",
};

constexpr const char* otherseries[] = {
    "[ConfigFile]\n",         "key#=x",
    "[SqlUserDatatypes]\n",   "key#=x",
    "[Data Servers]\n",       "NetIsEther_#=a,b", "NetIsUDP_#=a,b",
    "[Datasets]\n",           "DataSet_#=D#,d",
    "[DataSets]\n",           "DataSet_#=COMMON",
    "[MagTape]\n",            "Drive_#=47~/dev/x",
    "[Devices]\n",            "Device_#=a",
    "[Device Sub-Types]\n",   "SubType_#=C-NT CONSOLE",
    "[Namespace]\n",          "Nsp~#=a~b",
    "[NamespGloMap]\n",       "NspGloMap~N#~1=SYS$M",
    "[NamespSLM]\n",          "NspSLM~N#~g~1=a",
    "[NamespRouMap]\n",       "NspRouMap~N#~1=a~b",
    "[NspMap.U]\n",           "GloMap_#=odd#", "GloSLM_odd#_1=x", "RouMap_#=x",
    "[NspMap.N#]\nGloMap_1=odd",
    "[Namespaces]\nNsp_1=U\n", "Nsp_>=N#",
    "[ZPG.Applications]\n",   "ZPGApp_#=/a#",
};
// clang-format on

/// Those sections and all series, each in the first section of its header.
std::vector<std::string> everything() {
  std::vector<std::string> parts;
  for (const std::string& part : settings(true)) {
    parts.push_back(part);
    if (part == "[Com]\n") parts.emplace_back("COM#:=x");
    if (part == "[DSM-DDP]\n") parts.emplace_back("NetIsDDP_#=a");
    if (part == "[Net]\n") parts.insert(parts.end(), std::begin(netseries), std::end(netseries));
  }
  parts.insert(parts.end(), std::begin(otherseries), std::end(otherseries));
  return parts;
}

// clang-format off
const Family unique[] = {
    // Mapping sections.
    {"DroppedMappings",                climbladder,     {user, "GloMap_#=g#,DATA|GloMap_#=odd#,DATA"}},
    {"DroppedMappingsDescending",      climbladder,     {user, "GloMap_<=g#,DATA|GloMap_<=odd#,DATA"}},
    {"DroppedMappingsInNoOrder",       climbladder,     {user, "GloMap_?=g#,DATA|GloMap_?=odd#,DATA"}},
    {"AllMappingsDropped",             climbladder,     {user, "GloMap_#=odd#"}},
    {"DroppedSubscriptMappings",       climbladder,     {user, "GloMap_#=g#,DATA|GloMap_#=odd#,DATA", "GloSLM_odd#_1=x"}},
    {"SubscriptMappingsBefore",        climbladder,     {user, "GloSLM_odd#_1=x", "GloMap_#=g#,DATA|GloMap_#=odd#,DATA"}},
    {"SubscriptsOfOneGlobal",          climbladder,     {user, "GloSLM_odd_<=x", "GloMap_1=odd\n"}},
    {"KeptMappings",                   climbladder,     {user, "GloMap_#=g#,DATA"}},
    {"MappingsBehindAGap",             climbladder,     {user, "GloMap_>=odd"}},
    {"MappingsBehindSettings",         climbladder,     {user, "key#=x", "GloMap_#=odd#"}},
    // Namespaces.
    {"Namespaces",                     climbladder,     {ubuntu, "[Namespaces]\n", "Nsp_#=N#"}},
    {"NamespacesInNoOrder",            climbladder,     {ubuntu, "[Namespaces]\n", "Nsp_?=N#"}},
    {"NamespacesOfOneSection",         climbladder,     {ubuntu, "[NspMap.U]\n", "GloMap_#=g", "[Namespaces]\n", "Nsp_#=U"}},
    {"NamespacesOfOneDroppedSection",  climbladder,     {ubuntu, "[NspMap.U]\n", "GloMap_#=odd", "key#=x", "[Namespaces]\n", "Nsp_#=U"}},
    {"NamespacesOfDroppedMappings",    climbladder,     {ubuntu, "[Namespaces]\n", "Nsp_#=N#", "[NspMap.N#]\nGloMap_1=odd"}},
    {"NamespacesThatJoinTheList",      climbladder,     {ubuntu, "[Namespaces]\nNsp_1=N1\n", "[NspMap.N#]\n=x\nGloMap_1=g\nNsp_>=N>"}},
    {"NamespacesThatJoinOneSection",   climbladder,     {ubuntu, "[Namespaces]\n", "Nsp_#=U|Nsp_#=N@", "[NspMap.U]\n", "key#=x", "[NspMap.N#]\nGloMap_1=odd\n=x"}},
    {"SectionsThatJoinAChain",          climbladder,     {ubuntu, "[Namespaces]\n", "Nsp_<=N#", "[NspMap.N#]\nGloMap_1=odd\n=x"}},
    {"LinesThatJoinAChain",             climbladder,     {ubuntu, "[Namespaces]\n", "Nsp_<=N#", "[NspMap.N#]\nGloMap_1=odd\n=x", "key#=x"}},
    {"JoinedSeriesThatGoesOn",          climbladder,     {ubuntu, "[Namespaces]\n", "Nsp_#=U|Nsp_#=N@", "[NspMap.U]\nGloMap_1=g\n", "key#=x", "[NspMap.N#]\n=x\nGloMap_1=g\nGloMap_>=g"}},
    {"SectionsThatStay",               climbladder,     {ubuntu, "[Namespaces]\n", "Nsp_#=N#", "[NspMap.N#]\nGloMap_1=g"}},
    {"LargeSectionThatJoins",          climbladder,     {ubuntu, "[Namespaces]\nNsp_1=V\n", "[NspMap.U]\n", "GloMap_#=g", "[NspMap.V]\n=x\n", "GloMap_#=g"}},
    {"HiddenMappingsThatJoin",         climbladder,     {ubuntu, "[Namespaces]\nNsp_1=V\n", "[NspMap.U]\n", "GloMap_#=g", "GloSLM_g#_1=x", "[NspMap.V]\n=x\nGloMap_1=g\n", "GloMap_9#=g"}},
    // Headers of one text.
    {"HeadersOfOneText",                climbladder,     {ubuntu, "[s]"}},
    {"MergedHeadersOfOneText",          mergepair,       {ubuntu, "[s]"}},
    {"HeadersOfOneTextAside",           setaside,        {"[s]\n", "key#=x", "[s]"}},
    // Other series of the main ladder.
    {"Databases",                      climbladder,     {datasets, "DataSet_#=D#,d,,0,P,0,0"}},
    {"DatabasesDescending",            climbladder,     {datasets, "DataSet_<=D#,d,,0,P,0,0"}},
    {"StandardDatabasesLast",          climbladder,     {datasets, "DataSet_#=D#,d", "DataSet_^=VELMLIB\n"}},
    {"Applications",                   climbladder,     {zpg, "ZPGApp_#=/a#,a,1,1,,900,1,,USER,1,,,,0"}},
    {"ApplicationsInNoOrder",          climbladder,     {zpg, "key#=x", "ZPGApp_?=/a#,a,1,1,,900,1,,USER,1,,,,0"}},
    {"Drives",                         climbladder,     {tru64, "Drive_#=47~/dev/nrmt0h"}},
    {"DrivesDescending",               climbladder,     {tru64, "key#=x", "Drive_<=47~/dev/nrmt0h"}},
    {"Servers",                        climbladder,     {ubuntu, "[Data Servers]\n", "NetIsUDP_#=s#,x", "NetIsEther_<=s#,x"}},
    {"EqualServers",                   climbladder,     {ubuntu, "[Data Servers]\n", "NetIsUDP_#=s,x", "NetIsEther_#=s,x"}},
    {"DdpServers",                     climbladder,     {ubuntu, "[DSM-DDP]\n", "NetIsDDP_<=s", "DdpHost=x\n"}},
    {"SerialPorts",                    climbladder,     {ubuntu, "[Com]\n", "COM#:=x"}},
    {"SerialPortsDescending",          climbladder,     {ubuntu, "[Com]\n", "key#=x", "COM<:=x"}},
    // Settings and sections.
    {"SettingsBefore",                 climbladder,     settings(false)},
    {"SettingsBehind",                 climbladder,     settings(true)},
    {"Everything",                     climbladder,     everything()},
    {"HugeUnknownSection",             climbladder,     {ubuntu, "key#=x"}},
    {"UnknownSections",                climbladder,     {ubuntu, "[s#]"}},
    {"UnknownSectionsBefore",          climbladder,     {"[s<]\nkey=x", ubuntu}},
    // The standards in the modes that replace what is there.
    {"ResetDatabases",                 resetstandards,  {datasets, "DataSet_#=D#,d", "DataSet_^=SAMPLES\n", "[Namespaces]\n", "Nsp_#=N#,d", "Nsp_^=DOCBOOK\n"}},
    {"ResetDrives",                    resetstandards,  {tru64, "Drive_<=47~/dev/nrmt0h"}},
    {"RefreshedApplications",          resetstandards,  {zpg, "ZPGApp_1=/apps/scrivel\n", "ZPGApp_>=/a#"}},
    {"RefreshedApplicationsDescending", resetstandards, {zpg, "ZPGApp_<=/a#", "ZPGApp_^=/zpg/druvelib\n"}},
    {"ResetEverything",                resetstandards,  everything()},
    // The network ladder.
    {"LegacyGlobalMappings",           climbnetwork,    {"[NamespGloMap]\n", "NspGloMap~U~#=g~SYS$M~a~b~c~d"}},
    {"LegacyMappingsJoinMappings",     climbnetwork,    {"[NspMap.U]\n", "key#=x", "[NamespGloMap]\n", "NspGloMap~U~#=g"}},
    {"LegacyMappingsOfManyNamespaces", climbnetwork,    {"[NamespGloMap]\n", "NspGloMap~U#~1=g~SYS$M~a~b~c~d"}},
    {"LegacyMappingsOfManySections",   climbnetwork,    {"[NspMap.U#]\nkey=x", "[NamespGloMap]\n", "NspGloMap~U<~1=g"}},
    {"LegacyMappingsThatEnd",          climbnetwork,    {"[NamespGloMap]\n", "NspGloMap~U~#=g", "=x\n", "key#=x"}},
    {"LegacySubscriptMappings",        climbnetwork,    {"[NamespSLM]\n", "NspSLM~U~g#~1=a~b~c~d~e"}},
    {"LegacyRoutineMappings",          climbnetwork,    {"[NamespRouMap]\n", "NspRouMap~U~#=a~b"}},
    {"LegacyServers",                  climbnetwork,    {"[Net]\n", "NetIsEther_#=a~b~c", "NetIsUdp_<=a", "NetIsDDP_#=a", "DDPVolSet_#=a", "DDPVolumeAndUci_?=a"}},
    {"LegacyServersJoinServers",       climbnetwork,    {"[Data Servers]\n", "key#=x", "[DSM-DDP]\n", "key#=x", "[Net]\n", "NetIsEther_#=a", "NetIsUdp_#=a", "DDPVolSet_#=a"}},
    {"LegacyNamespaces",               climbnetwork,    {"[Namespace]\n", "Nsp~#=a~b~c"}},
    {"LegacyNamespacesJoinNamespaces", climbnetwork,    {"[Namespaces]\n", "Nsp_#=a", "[Namespace]\n", "Nsp~<=a~b~c~d~e~DRUVESQL"}},
    {"LegacyDatabases",                climbnetwork,    {"[DataSets]\n", "DataSet_#=COMMON,x,,0,P,0|DataSet_#=D,x,,0,P,0"}},
    {"LegacyDatabasesDescending",      climbnetwork,    {"[DataSets]\n", "key#=x", "DataSet_<=COMMON,x|DataSet_<=D,SYS$M SYS$C SYS$M SYS$C"}},
    {"LegacyNetworkOfEverything",      climbnetwork,    everything()},
    // The system ladder.
    {"LegacyDevices",                  climbsystem,     {"[Devices]\n", "Device_#=a~b~c~C-NT CONSOLE", "[Device Sub-Types]\n", "SubType_<=C-NT CONSOLE"}},
    {"LegacySettingsBefore",           climbsystem,     settings(false)},
    {"LegacySettingsBehind",           climbsystem,     settings(true)},
    {"LegacySystemOfEverything",       climbsystem,     everything()},
    // The commands.
    {"MergedSettings",                 mergepair,       settings(false)},
    {"MergedEverything",               mergepair,       everything()},
    {"MergedMappings",                 mergepair,       {user, "GloMap_#=odd#", "[NamespGloMap]\n", "NspGloMap~USER~#=odd"}},
    {"MergedSections",                 mergepair,       {ubuntu, "[s#]"}},
    {"UpdatedSections",                runupdate,       {ubuntu, "[s#]\nkey=x"}},
    {"DatabasesWithoutFdbms",          runfdbms,        {datasets, "DataSet_<=D"}},
    {"DatabasesBehindAGap",            runfdbms,        {datasets, "DataSet_>=D"}},
    {"SectionsBeforeTheParameter",     runsetparameter, {"[s#]\nkey=x", "[Last]\n"}},
    {"KeysBeforeTheParameter",         runsetparameter, {"[Last]\n", "key#=x", "key=x\n"}},
    {"SectionsAside",                  setaside,        {"[s#]"}},
};

const Family duplicated[] = {
    {"MappingsOfOneNumber",     climbladder,  {user, "GloMap_1=odd#|GloMap_1=g#"}},
    {"EachMappingTwice",        climbladder,  {user, "GloMap_@=odd#|GloMap_@=g#"}},
    {"EachDroppedMappingTwice", climbladder,  {user, "GloMap_@=odd"}},
    {"MappingsTwiceInTurn",     climbladder,  {user, "GloMap_#=odd", "GloMap_<=g|GloMap_<=odd"}},
    {"OneSubscriptMapping",     climbladder,  {user, "GloMap_#=odd", "GloSLM_odd_1=x"}},
    {"OneNamespace",            climbladder,  {ubuntu, "[Namespaces]\n", "Nsp_#=N", "[NspMap.N]\nGloMap_1=odd\n=x"}},
    {"OneApplication",          climbladder,  {zpg, "ZPGApp_1=a"}},
    {"OneLegacyNamespace",      climbnetwork, {"[Namespace]\n", "Nsp~1=a~b"}},
    {"OneLegacyMapping",        climbnetwork, {"[NamespGloMap]\n", "NspGloMap~U~1=g~SYS$M"}},
    {"OneLegacySection",        climbnetwork, {"[NamespGloMap]\n=x"}},
};
// clang-format on

}  // namespace

std::span<const Family> uniquefamilies() { return unique; }
std::span<const Family> duplicatedfamilies() { return duplicated; }

}  // namespace tolvane::test
