// Numbered series: lists written as the entries <prefix>1, <prefix>2, ... of a section. A series is read from 1 upward
// and ends at the first number that has no entry: what stands behind such a gap is never seen, and the gap is the
// number that a new entry takes.
#pragma once

#include <string_view>
#include <vector>

#include "document/linestore.h"

namespace tolvane {

/// The number of an entry of the series; 0 for any other line, and for a number beyond those of an int.
int numberof(const Line& line, std::string_view prefix);

/// The entries of the series, from 1 up to the gap: what `findbelow` finds for each number, in one pass over the
/// section. They may be discarded and rewritten on the way; what is added to the series meanwhile is not among them.
std::vector<Line*> series(const Line* header, std::string_view prefix);

/// How many entries the series has.
int countseries(std::string_view section, std::string_view prefix);

/// A place in a series: an entry and its number, or none and the first free number.
struct Place {
  int number;
  Line* line;
};

/// The first of the entries whose field 1 (separator ",") is exactly that name, else the number behind them.
Place locate(const std::vector<Line*>& entries, std::string_view name);

/// The first entry of the series whose field 1 (separator ",") is exactly that name, else the first free number.
Place locate(std::string_view section, std::string_view prefix, std::string_view name);

/// Adds an entry under a number of the series, as `saveentry` does.
void savenumbered(std::string_view section, std::string_view prefix, int n, std::string_view value);

}  // namespace tolvane
