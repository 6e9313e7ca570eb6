// The conversion is run again and again on the sources, their long lines cut short but for the first few: at some line
// more it ends as it did, and that line is to blame. Halving finds it in few runs. What ends the run carries no name,
// for a value may be too long before it is known where it goes.
#include "preview/culprit.h"

#include "document/bytes.h"
#include "document/ends.h"
#include "document/observer.h"
#include "preview/conversion.h"

namespace tolvane {

namespace {

/// A line of at most so many characters never grows too long: no step adds half a line.
constexpr std::size_t uncut = Text::maximum / 2;

/// A line that is longer, by its source and its place among the lines there.
struct Candidate {
  std::size_t source;
  std::size_t place;
};

std::vector<Candidate> candidates(const Preview& preview) {
  std::vector<Candidate> found;
  for (std::size_t source = 0; source < preview.sources.size(); ++source) {
    const Snapshot& lines = preview.sources[source].lines;
    for (std::size_t place = 0; place < lines.size(); ++place) {
      if (preview.words.text(lines[place].text).size() > uncut) found.push_back({source, place});
    }
  }
  return found;
}

/// The contents of the sources with all candidates cut short but for the first `whole` ones.
std::vector<std::string> cutshort(const Preview& preview, std::size_t whole) {
  std::vector<std::string> result;
  std::size_t met = 0;
  for (const Source& source : preview.sources) {
    std::string& contents = result.emplace_back();
    for (const Entry& line : source.lines) {
      const std::string_view text = preview.words.text(line.text);
      const bool cut = text.size() > uncut && met++ >= whole;
      contents.append(cut ? text.substr(0, uncut) : text).append(1, '\n');
    }
  }
  return result;
}

/// True when the run ends for a line that is too long, in the part in which the preview ended.
bool endslikewise(const Preview& preview, std::size_t whole) {
  const std::vector<std::string> contents = cutshort(preview, whole);
  std::size_t parts = 0;
  const Observer counting{[&parts](auto...) { ++parts; }, [](std::string_view) {}};
  const Observing here{counting};
  try {
    (void)convertsources(preview.request.merge(), [&](std::size_t source, const Aside* /*system*/) {
      checkopen(preview.sources[source].openerror, "");
      checkread(preview.sources[source].readerror, "");
      parse(contents[source]);
    });
  } catch (const TextTooLong&) {
    return parts == preview.parts.size();
  } catch (const Fatal&) {
    return false;
  }
  return false;
}

LongLine named(const Preview& preview, const Candidate& candidate) {
  const Source& source = preview.sources[candidate.source];
  const Entry& line = source.lines[candidate.place];
  const std::string_view text = preview.words.text(line.text);
  return {candidate.source, linenumber(source.bytes, candidate.place), std::string(preview.words.text(line.section)),
          std::string(text.substr(0, text.find('='))), text.size()};
}

}  // namespace

std::optional<LongLine> culprit(const Preview& preview) {
  const std::vector<Candidate> lines = candidates(preview);
  std::size_t fine = 0;
  std::size_t toomany = lines.size();
  if (endslikewise(preview, fine) || !endslikewise(preview, toomany)) return {};
  while (toomany - fine > 1) {
    const std::size_t middle = fine + (toomany - fine) / 2;
    (endslikewise(preview, middle) ? toomany : fine) = middle;
  }
  return named(preview, lines[toomany - 1]);
}

}  // namespace tolvane
