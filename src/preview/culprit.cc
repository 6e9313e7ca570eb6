// The conversion is run again and again on the sources, their long lines cut short but for the first few: at some line
// more it ends as it did, and that line is to blame. Halving finds it in few runs. What ends the run carries no name,
// for a value may be too long before it is known where it goes.
#include "preview/culprit.h"

#include "document/ends.h"
#include "document/entries.h"
#include "document/watch.h"
#include "preview/lines.h"

namespace tolvane {

namespace {

/// A line of at most so many characters never grows too long: no step adds half a line.
constexpr std::size_t uncut = Text::maximum / 2;

/// A line that is longer, and the section that it stands in.
struct Candidate {
  std::size_t source;
  Loaded line;
  std::string_view section;
};

/// A run: the inputs that it is given, and how far it got.
struct Run {
  std::vector<Input> inputs;
  std::size_t opened = 0;
  std::size_t parts = 0;
};

Run* running = nullptr;

constexpr Watch rerun{
    [](const char* /*path*/) { return serve(running->inputs[running->opened++]); },
    [] {},
    [](std::string_view /*version*/, std::string_view /*phrase*/) { ++running->parts; },
    [](std::string_view /*text*/) {},
};

std::vector<Candidate> candidates(const Preview& preview) {
  std::vector<Candidate> found;
  for (std::size_t source = 0; source < preview.sources.size(); ++source) {
    std::string_view section;
    for (const Loaded& line : preview.sources[source].reading.lines) {
      if (line.text.starts_with('[')) section = line.text;
      if (line.text.size() > uncut) found.push_back({source, line, section});
    }
  }
  return found;
}

/// The sources with all candidates cut short but for the first `whole` ones.
std::vector<Input> inputs(const Preview& preview, std::size_t whole) {
  std::vector<Input> result;
  std::size_t met = 0;
  for (const Source& source : preview.sources) {
    Input& input = result.emplace_back();
    input.openerror = source.input.openerror;
    for (const Loaded& line : source.reading.lines) {
      const bool cut = line.text.size() > uncut && met++ >= whole;
      input.bytes.append(cut ? line.text.substr(0, uncut) : line.text).append(1, '\n');
    }
  }
  return result;
}

/// True when the run ends for a line that is too long, in the part in which the preview ended.
bool endslikewise(const Preview& preview, Convert convert, std::size_t whole) {
  Run run{inputs(preview, whole)};
  running = &run;
  const Forgetting afterwards;
  try {
    convert(preview.request);
  } catch (const TextTooLong&) {
    return run.parts == preview.parts.size();
  } catch (const Fatal&) {
    return false;
  }
  return false;
}

LongLine named(const Candidate& candidate) {
  const std::string_view text = candidate.line.text;
  return {candidate.source, candidate.line.number, std::string(candidate.section),
          std::string(text.substr(0, text.find('='))), text.size()};
}

}  // namespace

std::optional<LongLine> culprit(const Preview& preview, Convert convert) {
  const std::vector<Candidate> lines = candidates(preview);
  watch = rerun;
  std::size_t fine = 0;
  std::size_t toomany = lines.size();
  bool found = !endslikewise(preview, convert, fine) && endslikewise(preview, convert, toomany);
  while (found && toomany - fine > 1) {
    const std::size_t middle = fine + (toomany - fine) / 2;
    (endslikewise(preview, convert, middle) ? toomany : fine) = middle;
  }
  watch = nobody;
  return found ? std::optional(named(lines[toomany - 1])) : std::nullopt;
}

}  // namespace tolvane
