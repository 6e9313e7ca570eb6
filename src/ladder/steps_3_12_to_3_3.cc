// The steps "3.12" to "3.3".
#include <algorithm>
#include <set>

#include "document/edits.h"
#include "document/entries.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "document/observer.h"
#include "ladder/platformrecord.h"
#include "ladder/sqldatatypes.h"
#include "ladder/steps.h"

namespace tolvane {

namespace {

/// A platform name as an old release wrote it for an operating-system family, and what it is called from now on.
struct Rename {
  std::string_view family;
  std::string_view name;
  std::string_view newname;
};

// Kept: "OpenVMS for VAX" and "Digital UNIX" are known to no platform table. Such files end at the platform check.
constexpr Rename platformrenames[] = {
    {"VMS",        "Alph axp",                "OpenVMS for Alpha"         },
    {"VMS",        "Alpha axp",               "OpenVMS for Alpha"         },
    {"VMS",        "VAX/VMS",                 "OpenVMS for VAX"           },
    {"UNIX",       "Alpha OSF",               "Digital UNIX"              },
    {"UNIX",       "Alpha axp",               "Digital UNIX"              },
    {"UNIX",       "Alph axp",                "Digital UNIX"              },
    {"UNIX",       "PowerPC",                 "IBM PowerPC"               },
    {"UNIX",       "RS6000",                  "IBM RS/6000"               },
    {"UNIX",       "RS/6000",                 "IBM RS/6000"               },
    {"UNIX",       "HP",                      "HP/UX"                     },
    {"UNIX",       "SCO",                     "SCO Unix"                  },
    {"UNIX",       "Unixware",                "SCO Unixware"              },
    {"UNIX",       "AViiON (Intel) DG/UX",    "DG AViiON (Intel)"         },
    {"UNIX",       "DG/Intel",                "DG AViiON (Intel)"         },
    {"UNIX",       "AViiON (Motorola 88000)", "DG AViiON (Motorola 88000)"},
    {"UNIX",       "Solaris/SPARC",           "Solaris (SPARC)"           },
    {"UNIX",       "Solaris/Intel",           "Solaris (Intel)"           },
    {"Windows NT", "Intel",                   "Windows NT (Intel)"        },
    {"Windows NT", "Alpha",                   "Windows NT (Alpha)"        },
};

std::string_view newplatformname(std::string_view name, std::string_view family) {
  if (family == "Windows 95") return "Windows 95/98";
  for (const Rename& row : platformrenames) {
    if (row.family == family && row.name == name) return row.newname;
  }
  return name;
}

bool knownfamily(std::string_view family) {
  return family == "VMS" || family == "UNIX" || family == "Windows 95" || family == "Windows NT";
}

void normaliseplatform() {
  const Text record = platformrecord();
  const Text name = getfield(record, 1, '~');
  const Text family = name == "DG/Intel" ? Text("UNIX") : getfield(record, 2, '~');
  if (!knownfamily(family)) print({"Unknown o/s type ", family, "\n"});
  const Text newrecord = replacefield(record, 2, '~', family);
  setplatformrecord(replacefield(newrecord, 1, '~', newplatformname(name, family)));
}

// Kept: the two differ in the order of the blank and the tilde.
constexpr std::string_view trxfrom314 = R"( ~`@#$%^&*()_+-=[]\{}|;':",./<>?)";
constexpr std::string_view trxfrom32 = R"(~ `@#$%^&*()_+-=[]\{}|;':",./<>?)";
static_assert(trxfrom314.size() == 32 && trxfrom32.size() == 32);

// The new defaults of step "3.14", in the order in which they are appended. Where a table is in two parts, an entry
// whose value comes from "[Startup]" stands between them.

constexpr Edit startupdefaults[] = {
    {"ShutdownTimeout",        "300"},
    {"EnableMultiUserClients", "NO" },
    {"ErrorPurge",             "30" },
};

constexpr Edit sqldefaults[] = {
    {"ddlNo30",           "0" },
    {"ddlNo201",          "0" },
    {"ddlNo307",          "0" },
    {"ddlNo315",          "0" },
    {"ddlNo324",          "0" },
    {"ddlNo333",          "0" },
    {"dropDelete",        "1" },
    {"idKey",             "1" },
    {"lockTimeout",       "10"},
    {"comments",          "0" },
    {"delimitedIds",      "0" },
    {"dbmsSecurity",      "1" },
    {"namespaceSecurity", "1" },
    {"loginOverride",     ""  },
};

constexpr Edit moresqldefaults[] = {
    {"prefix",    "DruveSql"},
    {"saveMAC",   "1"       },
    {"idTrxFrom", trxfrom314},
    {"idTrxTo",   ""        },
};

constexpr Edit miscellaneousdefaults[] = {
    {"MNetSets",        "0"},
    {"JournalHalt",     "0"},
    {"NetErrToLog",     "0"},
    {"NetErrToOpr",     "0"},
    {"DisconnectErr",   "0"},
    {"ReliableJob",     "1"},
    {"DdpSec",          "0"},
    {"NetNullSubs",     "0"},
    {"RelCommit",       "0"},
    {"ViewPastData",    "0"},
    {"NamespacePrompt", "1"},
};

constexpr Edit moremiscellaneousdefaults[] = {
    {"BroadcastHard",     "0"   },
    {"PopError",          "0"   },
    {"DropRemLocks",      "0"   },
    {"ZDateNull",         "0"   },
    {"JournalZGlob",      "1"   },
    {"AsynchError",       "1"   },
    {"NWDSRetry",         "0"   },
    {"NoNspNotify",       "0"   },
    {"JrnlNewGlo",        "0"   },
    {"EnableCaching",     "1"   },
    {"SetZEOF",           "0"   },
    {"NodeNameInPid",     "0"   },
    {"OldZU5",            "0"   },
    {"DefLoginNSP",       "USER"},
    {"ShutDownLogErrors", "0"   },
    {"TruncateOverflow",  "0"   },
    {"LogRollback",       "0"   },
};

}  // namespace

void step312() {
  if (Text master; getvalue("[Startup]", "DomainspaceMaster", master)) {
    Text newmaster{master == "YES" ? '1' : '0'};
    Text backupmaster;
    if (getvalue("[Net]", "NSBackupMaster", backupmaster)) newmaster.set(newmaster, ',', backupmaster);
    editentry("[Startup]", "DomainspaceMaster", newmaster);
  }
  delentry("[Net]", "NSBackupMaster");
}

void step313() {
  normaliseplatform();
  editentry("[Net]", "Timeout", "10");
  saveentry("[Net]", "baserexmit", "1");
  saveentry("[Net]", "maxrexmit", "20");
  minvalue("[Net]", "udprcvbufsiz", "400000");
  minvalue("[Net]", "udpsndbufsiz", "250000");
}

void step314() {
  delentry("[config]", "cpus");
  saveall("[Startup]", startupdefaults);
  saveentry("[DTMnetBIOS]", "DTMcollation", "0");
  saveall("[SQL]", sqldefaults);
  saveentry("[SQL]", "daysBeforePurge", takeentry("[Startup]", "DaysBeforePurge", "7"));
  saveall("[SQL]", moresqldefaults);
  saveall("[SqlSysDatatypes]", newdatatypes);
  newsection("[SqlUserDatatypes]");  // kept: a second one where the file has one
  saveentry("[ViewPoint]", "VPSendResSz", "1");
  saveentry("[ViewPoint]", "VPSendDTMNet", "1");
  each(keepentry, "[Miscellaneous]", miscellaneousdefaults);
  keepentry("[Miscellaneous]", "NetHardening", takeentry("[Startup]", "nethard", "1"));
  each(keepentry, "[Miscellaneous]", moremiscellaneousdefaults);
}

void step32() {
  saveentry("[SqlSysDatatypes]", "NVARCHAR(%1,%2)", "%String(MAXLEN=%1)");
  constexpr Edit types[] = {
      {"BIT",            "%Boolean"          },
      {"VARCHAR(%1)",    "%String(MAXLEN=%1)"},
      {"VARCHAR(%1,%2)", "%String(MAXLEN=%1)"},
      {"VARCHAR2(%1)",   "%String(MAXLEN=%1)"},
  };
  each(editentry, "[SqlSysDatatypes]", types);
  delentry("[SqlSysDatatypes]", "VARCHAR(255)");
  saveentry("[SqlSysDatatypes]", "LONG RAW", "BStream%String");
  constexpr Edit sql[] = {
      {"idTrxFrom",         trxfrom32},
      {"namespaceSecurity", "0"      },
      {"saveMAC",           "0"      },
  };
  each(editentry, "[SQL]", sql);
  if (Text value; takeentry("[SQL]", "ddlNo303", value)) keepentry("[SQL]", "ddlNo333", value);
  if (platformfamily() == "VMS") moveentry("[config]", "usephysicalmem", "[config]", "useresidentmem");
  saveentry("[Startup]", "Imjrnthreshold", "10");
}

void step321() {
  std::set<std::string_view> keys;
  for (const Line* line = below(find("[Com]")); line != nullptr; line = nextinsection(line)) keys.insert(keyof(*line));
  int ports = 0;
  while (keys.contains(Text("COM", ports + 1, ':'))) ++ports;
  editentry("[config]", "ttysiz", replacefield(getvalue("[config]", "ttysiz"), 2, ',', Text(ports + 2)));
}

void step33() {
  const int size = numberin("[config]", "bbsiz");  // kept: an entry without a number becomes "0,0"
  editentry("[config]", "bbsiz", Text(std::min(size, 128), ',', size));
  saveentry("[Shadowing]", "KeepCliProp", "0");
}

}  // namespace tolvane
