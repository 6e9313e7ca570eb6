// The version ladder: every step from the oldest to the current version. A new version is one row here, one in
// sVersions, and one procedure. The versions up to "3.11", "5.31", "5.33" and "5.38" are known and have no step.
#pragma once

#include <iterator>

#include "ladder/climb.h"
#include "ladder/steps.h"

namespace tolvane {

inline constexpr Step ladder[] = {
    {"3.12",  step312, "domain-space master"                                     },
    {"3.13",  step313, "platform names, network timing"                          },
    {"3.14",  step314, "new defaults, SQL settings and data types"               },
    {"3.2",   step32,  "data-type corrections, SQL and memory settings"          },
    {"3.21",  step321, "terminal count"                                          },
    {"3.3",   step33,  "big-buffer size, shadowing"                              },
    {"4.0",   step40,  "SQL options, language mode, VMS paths"                   },
    {"4.1",   step41,  "memory and terminal sizing"                              },
    {"4.2",   step42,  "class names of the SQL data types, standard databases"   },
    {"5.0",   step50,  "web applications"                                        },
    {"5.0.5", step505, "audit database"                                          },
    {"5.2",   step52,  "server limits, count of legacy network connections"      },
    {"5.3",   step53,  "legacy communication summary"                            },
    {"5.32",  step532, "journaling of sets and kills"                            },
    {"5.34",  step534, "console log size, web applications"                      },
    {"5.35",  step535, "web server, heap size"                                   },
    {"5.36",  step536, "lock table"                                              },
    {"5.37",  step537, "units of routine buffers and console log"                },
    {"5.39",  step539, "journal directories"                                     },
    {"5.40",  step540, "journal mode"                                            },
    {"5.41",  step541, "journal section, port count, mappings of dropped globals"},
    {"5.42",  step542, "double precision, node count"                            },
    {"5.43",  step543, "data types, routine buffers on VMS"                      },
    {"5.44",  step544, "names of 64-bit platforms"                               },
    {"5.45",  step545, "obsolete keys"                                           },
};

static_assert(ascends(ladder));
static_assert(ladder[std::size(ladder) - 1].version == currentversion);

}  // namespace tolvane
