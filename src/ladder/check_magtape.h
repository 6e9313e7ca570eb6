// Tape device fix-up: the drives "Drive_1", "Drive_2", ... of "[MagTape]", whose values are fields separated by "~":
// the drive's number, its device path, and more. They are looked at up to the first gap in the numbers.
#pragma once

namespace tolvane {

/// Mode 0 gives drives on an old device path the new one; any other mode gives the drives the values of the standard
/// list and removes those beyond it. True when at least one drive changed. No step uses another mode than 0.
bool check_magtape(int mode);

}  // namespace tolvane
