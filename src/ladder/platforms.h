// The tables of the platform check.
#pragma once

#include <iterator>
#include <string_view>

namespace tolvane {

/// The platform that this tool is built for, by its row in `platname`.
inline constexpr int thisplatform = 64;

/// The platform names; the row is the platform ID. Kept: the two blanks of rows 2 and 3 and the letters of row 73.
inline constexpr std::string_view platname[] = {
    "Invalid Platform ID",              // 0
    "PDP 11 [obsolete]",                // 1
    "VAX (OpenVMS)  [obsolete]",        // 2
    "Data General MV/AOS  [obsolete]",  // 3
    "IBM VM/CMS [obsolete]",            // 4
    "MS-DOS [obsolete]",                // 5
    "Altos [obsolete]",                 // 6
    "Sequent [obsolete]",               // 7
    "Sun [obsolete]",                   // 8
    "SCO [obsolete]",                   // 9
    "Motorola 68K [obsolete]",          // 10
    "Arix [obsolete]",                  // 11
    "Pyramid [obsolete]",               // 12
    "DEC MIPS [obsolete]",              // 13
    "DG AViiON [obsolete]",             // 14
    "A.T.T. 3B2 [obsolete]",            // 15
    "SCO Unix V/386 [obsolete]",        // 16
    "IBM RS/6000 [obsolete]",           // 17
    "Motorola 88K [obsolete]",          // 18
    "PA-RISC-32(HP UX)",                // 19
    "Unisys 6000 [obsolete]",           // 20
    "TI S1500 [obsolete]",              // 21
    "Sequent/PTX [obsolete]",           // 22
    "SISCO [obsolete]",                 // 23
    "MIPS (UNIX) [obsolete]",           // 24
    "ICL [obsolete]",                   // 25
    "Pyramid S [obsolete]",             // 26
    "NCR [obsolete]",                   // 27
    "Alpha(OpenVMS)",                   // 28
    "Alpha(UNIX)",                      // 29
    "SPARC-32(Solaris)",                // 30
    "Motorola 88R4 [obsolete]",         // 31
    "X86-32(Windows)",                  // 32
    "Alpha(Windows) [obsolete]",        // 33
    "MIPS(Windows) [obsolete]",         // 34
    "PowerPC(Windows) [obsolete]",      // 35
    "X86-32(Linux)",                    // 36
    "p-32(AIX)",                        // 37
    "SGI Irix [obsolete]",              // 38
    "DG/Intel [obsolete]",              // 39
    "Alpha (Open VMS - DSM)",           // 40
    "VAX (Open VMS - DSM)",             // 41
    "Solaris/Intel [obsolete]",         // 42
    "UnixWare [obsolete]",              // 43
    "X86-32/64(Linux, OS X, Windows)",  // 44
    "UltraSPARC(Solaris)",              // 45
    "PA-RISC-64(HP UX)",                // 46
    "Heterogeneous",                    // 47
    "p-64(AIX)",                        // 48
    "Itanium(HP UX)",                   // 49
    "Itanium(Windows) [obsolete]",      // 50
    "Itanium(Linux) [obsolete]",        // 51
    "X86-64(Red Hat Linux)",            // 52
    "Itanium(OpenVMS)",                 // 53
    "Mac OS X/32-bit [obsolete]",       // 54
    "X86-64(Windows)",                  // 55
    "Mac OS X/x86/32-bit [obsolete]",   // 56
    "X86-64(Solaris)",                  // 57
    "X86-64(OS X)",                     // 58
    "ARM(Android)",                     // 59
    "Orvik Server",                     // 60
    "ARM-32(Linux)",                    // 61
    "p-64(Linux)",                      // 62
    "X86-64(SUSE Linux)",               // 63
    "X86-64(Ubuntu Linux)",             // 64
    "Container(Ubuntu-x64)",            // 65
    "VELM Community",                   // 66
    "VELM Express",                     // 67
    "ARM-64(Ubuntu Linux)",             // 68
    "ARM-64(Red Hat Linux)",            // 69
    "RISC-V(Red Hat Linux)",            // 70
    "MIPSLE-32(Linux)",                 // 71
    "Container(Ubuntu-ARM64)",          // 72
    "Talbe Manager",                    // 73
    "Apple Silicon(macOS)",             // 74
    "Container(Red Hat Linux)",         // 75
};

/// A name that older releases wrote into the platform record, and the ID that it stands for.
struct LegacyName {
  int id;
  std::string_view name;
};

/// The legacy names. A name that is also in `platname` is found here first.
inline constexpr LegacyName qpxnames[] = {
    {16, "SCO Unix"                  },
    {17, "IBM RS/6000"               },
    {18, "DG AViiON (Motorola 88000)"},
    {19, "HP/UX"                     },
    {19, "HP RISC"                   },
    {19, "HP RISC/32-bit"            },
    {20, "Unisys"                    },
    {28, "OpenVMS for Alpha"         },
    {29, "Tru64 UNIX"                },
    {30, "Solaris (SPARC)"           },
    {32, "Windows 95/98"             },
    {32, "Windows NT (Intel)"        },
    {33, "Windows NT (Alpha)"        },
    {36, "Linux (Intel)"             },
    {37, "PowerPC (UNIX)"            },
    {37, "IBM PowerPC"               },
    {37, "IBM PowerPC/32-bit"        },
    {39, "DG AViiON (Intel)"         },
    {42, "Solaris (Intel)"           },
    {43, "SCO Unixware"              },
    {45, "Solaris (UltraSPARC)"      },
    {45, "Solaris/UltraSPARC"        },
    {46, "HP RISC/64-bit"            },
    {48, "IBM PowerPC/64-bit"        },
    {49, "HP-UX/Itanium"             },
    {50, "Win64/Itanium"             },
    {51, "Linux/Itanium"             },
    {52, "Linux/AMD64"               },
    {52, "Linux/x86-64"              },
    {53, "OpenVMS for Itanium"       },
    {54, "Mac OS X/32-bit"           },
    {55, "Win64/AMD64"               },
    {55, "Win64/x86-64"              },
    {56, "Mac OS X/x86/32-bit"       },
    {57, "Solaris/AMD64"             },
    {57, "Solaris/x86-64"            },
    {58, "Mac OS X/x86-64"           },
    {59, "Android/ARM"               },
};

/// A change of platform: a file of the one may be taken over by a build for the other.
struct Upgrade {
  unsigned char from;
  unsigned char to;
};

/// The permitted changes. None leads to this build's platform, on purpose: every file of another one draws the warning.
inline constexpr Upgrade validupgs[] = {
    {30, 45},
    {19, 46},
    {46, 19},
    {37, 48},
    {48, 37},
    {54, 56},
    {56, 54},
    {54, 58},
    {56, 58},
    {58, 56},
};

inline constexpr int maxqpxnames = 38;
inline constexpr int maxupgs = 10;
static_assert(std::size(platname) == 76);
static_assert(std::size(qpxnames) == maxqpxnames);
static_assert(std::size(validupgs) == maxupgs);

}  // namespace tolvane
