#include "ladder/check_magtape.h"

#include <iterator>

#include "document/entries.h"
#include "document/fields.h"
#include "document/series.h"

namespace tolvane {

namespace {

/// The old device paths. Kept: rows 0 and 10 are one path, and so are rows 1 and 11: the first drive on such a path
/// takes the new path of the earlier row, every later one that of the other.
constexpr std::string_view oldmag[] = {
    "/dev/nrmt0h",  // 0
    "/dev/nrmt1h",  // 1
    "/dev/nrmt0l",  // 2
    "/dev/nrmt1l",  // 3
    "/dev/nrmt2l",  // 4
    "/dev/nrmt3l",  // 5
    "/dev/nrmt0m",  // 6
    "/dev/nrmt1m",  // 7
    "/dev/nrmt2m",  // 8
    "/dev/nrmt3m",  // 9
    "/dev/nrmt0h",  // 10
    "/dev/nrmt1h",  // 11
    "/dev/nrmt2h",  // 12
    "/dev/nrmt3h",  // 13
};

/// The new drives, by the row of their old path.
constexpr std::string_view magtape[] = {
    "47~/dev/ntape/tape0",     // 0
    "48~/dev/ntape/tape1",     // 1
    "49~/dev/ntape/tape0_d0",  // 2
    "50~/dev/ntape/tape1_d0",  // 3
    "51~/dev/ntape/tape2_d0",  // 4
    "52~/dev/ntape/tape3_d0",  // 5
    "53~/dev/ntape/tape0_d2",  // 6
    "54~/dev/ntape/tape1_d2",  // 7
    "55~/dev/ntape/tape2_d2",  // 8
    "56~/dev/ntape/tape3_d2",  // 9
    "57~/dev/ntape/tape0_d1",  // 10
    "58~/dev/ntape/tape1_d1",  // 11
    "59~/dev/ntape/tape2_d1",  // 12
    "60~/dev/ntape/tape3_d1",  // 13
};

constexpr int rows = static_cast<int>(std::size(magtape));
static_assert(std::size(oldmag) == 14 && rows == 14);

/// How many drives have been met on each of the two paths that stand in two rows.
struct Met {
  int drives[2] = {0, 0};
};

/// The new path for an old one; the same path when it is not an old one.
std::string_view newpath(std::string_view path, Met& met) {
  for (int row = 0; row < rows; ++row) {
    if (path != oldmag[row]) continue;
    if (row < 2 && met.drives[row]++ > 0) continue;
    return magtape[row].substr(3);  // behind the drive number and its "~"
  }
  return path;
}

bool mappaths() {
  Met met;
  bool changed = false;
  for (Line* const drive : series(find("[MagTape]"), "Drive_")) {
    const Text value{valueof(*drive)};
    const Text path = getfield(value, 2, '~');
    const std::string_view mapped = newpath(path, met);
    if (path == mapped) continue;
    rewrite(*drive, keyof(*drive), replacefield(value, 2, '~', mapped));
    changed = true;
  }
  return changed;
}

bool normalise() {
  bool changed = false;
  int row = 0;
  for (Line* const drive : series(find("[MagTape]"), "Drive_")) {
    const std::string_view standard = row < rows ? magtape[row++] : std::string_view{};
    if (standard.empty()) {
      discard(drive);
    } else if (valueof(*drive) != standard) {
      rewrite(*drive, keyof(*drive), standard);
    } else {
      continue;
    }
    changed = true;
  }
  return changed;
}

}  // namespace

bool check_magtape(int mode) { return mode == 0 ? mappaths() : normalise(); }

}  // namespace tolvane
