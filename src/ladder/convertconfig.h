// The driver of the version ladder.
#pragma once

#include <string_view>

namespace tolvane {

/// The entry gate: true when the steps are for a file of that version, false when it is current or not known.
bool passesgate(std::string_view version);

/// Brings the line store from the version that the file records up to the current one, which it writes into the
/// platform record. False when there is nothing to write to the file. A file that does not pass the entry gate
/// goes through the platform check alone, whose answer is the result. Fatal when the platform is unknown.
bool convertconfig(std::string_view version);

}  // namespace tolvane
