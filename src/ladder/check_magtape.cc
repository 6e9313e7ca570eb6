#include "ladder/check_magtape.h"

#include <iterator>

#include "document/entries.h"
#include "document/fields.h"
#include "document/series.h"

namespace tolvane {

namespace {

/// A standard drive: the device path that it had in old releases, and its value now.
struct Drive {
  std::string_view oldpath;
  std::string_view value;
};

// Kept: rows 0 and 10 have one old path, and so have rows 1 and 11: the first drive on such a path takes the new path
// of the earlier row, every later one that of the other.
constexpr Drive magtape[] = {
    {"/dev/nrmt0h", "47~/dev/ntape/tape0"   },
    {"/dev/nrmt1h", "48~/dev/ntape/tape1"   },
    {"/dev/nrmt0l", "49~/dev/ntape/tape0_d0"},
    {"/dev/nrmt1l", "50~/dev/ntape/tape1_d0"},
    {"/dev/nrmt2l", "51~/dev/ntape/tape2_d0"},
    {"/dev/nrmt3l", "52~/dev/ntape/tape3_d0"},
    {"/dev/nrmt0m", "53~/dev/ntape/tape0_d2"},
    {"/dev/nrmt1m", "54~/dev/ntape/tape1_d2"},
    {"/dev/nrmt2m", "55~/dev/ntape/tape2_d2"},
    {"/dev/nrmt3m", "56~/dev/ntape/tape3_d2"},
    {"/dev/nrmt0h", "57~/dev/ntape/tape0_d1"},
    {"/dev/nrmt1h", "58~/dev/ntape/tape1_d1"},
    {"/dev/nrmt2h", "59~/dev/ntape/tape2_d1"},
    {"/dev/nrmt3h", "60~/dev/ntape/tape3_d1"},
};

constexpr int rows = static_cast<int>(std::size(magtape));

/// How many drives have been met on each of the two paths that stand in two rows.
struct Met {
  int drives[2] = {0, 0};
};

/// The new path for an old one; the same path when it is not an old one.
std::string_view newpath(std::string_view path, Met& met) {
  for (int row = 0; row < rows; ++row) {
    if (path != magtape[row].oldpath) continue;
    if (row < 2 && met.drives[row]++ > 0) continue;
    return magtape[row].value.substr(3);  // behind the drive number and its "~"
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
    const std::string_view standard = row < rows ? magtape[row++].value : std::string_view{};
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
