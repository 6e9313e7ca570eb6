// `update` of any file.
#include <algorithm>

#include "commands/convert.h"
#include "document/parse.h"
#include "fuzz/properties.h"

namespace tolvane::fuzz {

namespace {

/// A line that no step knows: every key and every series that one knows begins with a letter, and none with "kept".
bool unknown(const std::string& line) {
  const char first = line.front();
  const bool letter = (first >= 'a' && first <= 'z') || (first >= 'A' && first <= 'Z');
  return line.starts_with("kept") || (!letter && first != '=' && first != '[');
}

/// A header that no step deletes. New ones may come behind them.
bool lastingheader(const std::string& line) { return line.starts_with('[') && !line.starts_with("[NspMap."); }

void claimheaderskept(const Lines& before, const Lines& after) {
  auto place = after.begin();
  for (const std::string& line : before) {
    if (!lastingheader(line)) continue;
    place = std::find(place, after.end(), line);
    claim(place != after.end(), "no section goes but those of namespaces, and none moves");
    ++place;
  }
}

/// The lines without the first entry "Com" of "[Com]".
Lines withoutcommunication(Lines lines) {
  const auto header = std::find(lines.begin(), lines.end(), "[Com]");
  for (auto line = header; line != lines.end(); ++line) {
    if (line != header && line->starts_with('[')) break;
    if (line->substr(0, line->find('=')) != "Com") continue;
    lines.erase(line);
    break;
  }
  return lines;
}

/// What came of a conversion.
enum class Conversion { ended, nothing, converted };

Conversion run(std::string_view contents) {
  bool converted = false;
  const auto work = [&] {
    parse(contents);
    converted = convert().has_value();
  };
  if (!ends(work, conversion(contents.size()))) return Conversion::ended;
  return converted ? Conversion::converted : Conversion::nothing;
}

/// A file of the current version stays as it is, but for one more "Com" that each run removes.
void claimsettled(const Lines& converted) {
  claim(run(contentsof(converted)) != Conversion::ended, "what was converted can be converted");
  const Lines again = storedlines();
  claim(again == converted || again == withoutcommunication(converted), "what was converted stays as it is");
}

}  // namespace

void update(std::string_view input) {
  const Lines before = linesof(input);
  const Conversion conversion = run(input);
  if (conversion == Conversion::ended) return;
  const Lines after = claimreadable();
  claimkept(before, after, unknown);
  claimheaderskept(before, after);
  if (conversion == Conversion::converted) claimsettled(after);
}

}  // namespace tolvane::fuzz
