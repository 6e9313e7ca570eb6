// Platform identification and upgrade check.
#pragma once

#include <string_view>

#include "ladder/platforms.h"

namespace tolvane {

/// The platform ID of a name, which may be a legacy one; 0 when it is unknown.
int getmachid(std::string_view name);

/// Identifies the platform of the line store, warns when a build for the given platform may not take it over, else
/// writes that platform's name into the platform record, and removes the communication entry of old UNIX and VMS files.
/// True when the change is to be written to the file. Fatal when the platform is unknown.
/// No step uses `build`: only tests pass another platform.
bool check_platupg(int build = thisplatform);

}  // namespace tolvane
