// Kept: what a step appends it appends beside an entry of that key, without looking for one.
#include "legacy/convertsystem.h"

#include "document/edits.h"
#include "document/entries.h"
#include "document/fields.h"
#include "document/numbers.h"
#include "document/series.h"
#include "ladder/platformrecord.h"

namespace tolvane {

namespace {

/// Gives a terminal type that was renamed its new name, in field n of every entry of a series.
void renameterminals(std::string_view section, std::string_view prefix, int n) {
  for (Line* const line : series(find(section), prefix)) {
    const Text type = getfield(valueof(*line), n, '~');
    if (type != "C-NT CONSOLE" && type != "C-Mirel Terminal") continue;
    rewrite(*line, keyof(*line), replacefield(valueof(*line), n, '~', "C-Druve Terminal"));
  }
}

/// Sets a field, separated by ",", of an entry that is there.
void editfield(std::string_view section, std::string_view key, int n, std::string_view text) {
  editentry(section, key, replacefield(getvalue(section, key), n, ',', text));
}

void sizebuffers() {
  if (platformfamily() != "VMS") {
    minvalue("[config]", "rbufsiz", "32");  // kept: where it raises the size, a second field goes
  } else if (find("[config]", "rbufsiz") != nullptr) {
    editfield("[config]", "rbufsiz", 2, "32");
  } else {
    saveentry("[config]", "rbufsiz", "8,32");
  }
}

void system202() { minvalue("[config]", "netdirtabsiz", "2048"); }

void system21() {
  if (getvalue("[Startup]", "zstu") == "0") saveentry("[Startup]", "start_0", "System~0~1");
  saveentry("[Com]", "Com", "OFF");
  renameterminals("[Devices]", "Device_", 4);
  renameterminals("[Device Sub-Types]", "SubType_", 1);
}

void system30() {
  minvalue("[config]", "implheap", "16384");  // kept: where it raises "implheap", further fields go
  if (platformfamily() == "OpenVMS") setplatformrecord(replacefield(platformrecord(), 2, '~', "VMS"));
}

void system31() {
  // Kept: what gets another key moves to the end of its section.
  moveentry("[LAT]", "ServiceName", "[LAT]", "ServiceName_1");
  moveentry("[LAT]", "ServiceDescription", "[LAT]", "ServiceDescription_1");
  moveentry("[LAT]", "ServiceRating", "[LAT]", "ServiceRating_1");
  saveentry("[Startup]", "JobServers", "0");
  moveentry("[config]", "usenpgdyn", "[config]", "usephysicalmem");
  if (getfield(getvalue("[config]", "implheap"), 2, ',').empty()) editfield("[config]", "implheap", 2, "65536");
}

void system311() {
  sizebuffers();
  if (within("Windows", platformfamily()) != 0) editfield("[config]", "niceval", 1, "1");
}

void system312() {
  saveentry("[Startup]", "maxconsolelogsize", "100000");
  const std::int64_t processes = number(getfield(getvalue("[config]", "processes"), 1, ','));
  minvalue("[config]", "ttysiz", Text(int32(processes * 100)));
  delsection("[Mvb]");
  delsection("[SQL]");
  delentry("[Startup]", "ViewPointServer");
  delentry("[Shadowing]", "SRVport");
  delentry("[Shadowing]", "SRVactive");
  saveentry("[Startup]", "DefaultPort", "1972");
  const Text size = getfield(getvalue("[config]", "nlstab"), 2, ',');
  editentry("[config]", "nlstab", size.empty() ? "0" : size.view());
}

constexpr Step systemsteps[] = {
    {"2.02", system202, "network directory table"                           },
    {"2.1",  system21,  "startup system, communication, terminal types"     },
    {"3.0",  system30,  "heap size, name of the VMS family"                 },
    {"3.1",  system31,  "LAT services, job servers, memory"                 },
    {"3.11", system311, "routine buffers, priority on Windows"              },
    {"3.12", system312, "console log, terminal memory, what became obsolete"},
};

static_assert(ascends(systemsteps));

}  // namespace

const std::span<const Step> systemladder = systemsteps;

void convertsystem(std::string_view version) { climb("system", systemladder, version); }

}  // namespace tolvane
