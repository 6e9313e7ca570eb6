// `merge` of any two files, which stand in the input one behind the other with a line "%" between them.
#include "document/parse.h"
#include "fuzz/properties.h"
#include "legacy/convertpair.h"

namespace tolvane::fuzz {

namespace {

/// A line that no step knows, as long as it stands in a section that none knows.
bool unknown(const std::string& line) { return line.starts_with("kept") || line.starts_with("[kept"); }

/// The lines of sections that no step knows. Those of other sections may be dropped with them.
Lines unknownsections(const Lines& lines) {
  Lines found;
  bool within = false;
  for (const std::string& line : lines) {
    if (line.starts_with('[')) within = line.starts_with("[kept");
    if (within && unknown(line)) found.push_back(line);
  }
  return found;
}

/// Whether the lines of the one stand among those of the other in their order.
void claimamong(const Lines& expected, const Lines& lines) {
  std::size_t found = 0;
  for (const std::string& line : lines) {
    if (found < expected.size() && line == expected[found]) ++found;
  }
  claim(found == expected.size(), "lines of sections that no step knows come out as they went in");
}

}  // namespace

void merge(std::string_view input) {
  const std::size_t end = input.find("%\n");
  const std::string_view system = input.substr(0, end);
  const std::string_view network = end == std::string_view::npos ? std::string_view{} : input.substr(end + 2);
  Lines before = linesof(system);
  const Lines networklines = linesof(network);
  before.insert(before.end(), networklines.begin(), networklines.end());

  const auto work = [&] {
    parse(system);
    LegacySystem converted = convertsystemfile();
    parse(network);
    joinnetworkfile(converted);
  };
  if (ends(work, conversion(input.size()))) claimamong(unknownsections(before), claimreadable());
}

}  // namespace tolvane::fuzz
