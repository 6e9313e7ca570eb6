// Web application fix-up: the applications "ZPGApp_1", "ZPGApp_2", ... of "[ZPG.Applications]", whose values are 19
// fields separated by ",", field 1 the URL path. They are looked at up to the first gap in the numbers.
#pragma once

namespace tolvane {

/// Adds the standard web applications that are missing and repairs the fields of entries in an older layout. With
/// `refresh` standard entries also get the standard value, obsolete ones are removed and the numbers close up. True
/// when at least one line was written, added or deleted. No step uses `refresh`.
bool check_zpg(bool refresh);

}  // namespace tolvane
