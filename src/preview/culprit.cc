// The conversion is run again on the sources, their long lines cut short but for the first few: at some line more it
// ends as it did, and that line is to blame. What ends the run carries no name, for a value may be too long before it
// is known where it goes. The first run has all lines cut short and marked: the marks in the lines that it leaves tell
// which one would be too long. Two runs show whether that is so. Otherwise halving finds the line.
#include "preview/culprit.h"

#include <algorithm>
#include <charconv>

#include "document/bytes.h"
#include "document/ends.h"
#include "document/forget.h"
#include "document/observer.h"
#include "document/parse.h"
#include "preview/conversion.h"

namespace tolvane {

namespace {

/// A line of at most so many characters never grows too long: no step adds half a line.
constexpr std::size_t uncut = Text::maximum / 2;

/// A longer line.
struct Candidate {
  std::size_t source;
  std::size_t place;   // in the source's contents
  std::size_t length;  // without its newline
};

/// The sources as the store has them, each line ended by a newline, and the long lines of all of them.
struct Originals {
  std::vector<std::string> contents;
  std::vector<Candidate> long_;
};

/// The marks of cut lines: this character and a number.
constexpr char mark = '\1';
constexpr std::size_t markdigits = 8;

std::string markof(std::size_t number) {
  std::string text(markdigits, '0');
  for (std::size_t n = markdigits; n-- > 0; number /= 10) text[n] = static_cast<char>('0' + number % 10);
  return mark + text;
}

Originals linesof(const Preview& preview) {
  Originals lines;
  for (const Source& source : preview.sources) {
    const std::size_t number = lines.contents.size();
    forget();
    parse(source.loaded ? std::string_view{source.bytes} : std::string_view{});
    const std::string& contents = lines.contents.emplace_back(tolvane::contents());
    for (std::size_t begin = 0; begin < contents.size();) {
      const std::size_t length = contents.find('\n', begin) - begin;
      if (length > uncut) lines.long_.push_back({number, begin, length});
      begin += length + 1;
    }
  }
  return lines;
}

/// A source with the long lines cut short but for the first `whole` ones of all sources. Cut ones can be marked.
std::string cutshort(const Originals& lines, std::size_t source, std::size_t whole, bool marked) {
  const std::string& contents = lines.contents[source];
  std::string result;
  result.reserve(contents.size());
  std::size_t begin = 0;
  for (std::size_t number = whole; number < lines.long_.size(); ++number) {
    const Candidate& line = lines.long_[number];
    if (line.source != source) continue;
    const std::string text = marked ? markof(number) : std::string();
    result.append(contents, begin, line.place + uncut - text.size() - begin).append(text);
    begin = line.place + line.length;
  }
  return result.append(contents, begin);
}

/// The mark at a place, as the number of its line; none if it is no mark.
std::optional<std::size_t> marked(const Originals& lines, std::string_view text) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
  const bool whole = error == std::errc{} && end == text.data() + text.size() && text.size() == 1 + markdigits;
  return whole && number < lines.long_.size() ? std::optional(number) : std::nullopt;
}

/// Which line, whole, would be the one that makes this cut one too long; the number of lines if none would.
std::size_t suspect(const Originals& lines, std::string_view text) {
  std::vector<std::size_t> cut;
  for (std::size_t place = text.find(mark); place < text.size(); place = text.find(mark, place + 1)) {
    if (const auto number = marked(lines, text.substr(place, 1 + markdigits))) cut.push_back(*number);
  }
  std::sort(cut.begin(), cut.end());
  std::size_t length = text.size();
  for (const std::size_t number : cut) {
    length += lines.long_[number].length - uncut;
    if (length > Text::maximum) return number;
  }
  return lines.long_.size();
}

/// A conversion of the sources up to the end of the part in which the preview ended.
struct Trial {
  const Preview& preview;
  const Originals& lines;
  std::size_t whole;
  bool marked = false;
  std::size_t parts = 0;
  std::size_t suspected = lines.long_.size();  // the first line of which that is known

  /// Thrown behind the part.
  struct Behind {};

  void look(const Line* first) {
    for (const Line* line = first; line != nullptr; line = line->next()) {
      suspected = std::min(suspected, suspect(lines, line->text()));
    }
  }

  void end() {
    if (marked) look(start);
  }

  void begin() {
    if (parts++ < preview.parts.size()) return;
    end();
    throw Behind{};
  }

  void load(std::size_t source, const Aside* system) {
    if (system != nullptr && marked) look(system->first());
    if (system != nullptr && parts == preview.parts.size()) throw Behind{};
    checkopen(preview.sources[source].openerror, "");
    checkread(preview.sources[source].readerror, "");
    parse(cutshort(lines, source, whole, marked));
  }

  /// Returns true if the run ends for a line that is too long, in the part in which the preview ended.
  bool endslikewise() {
    const Observer who{[this](auto...) { begin(); }, [](std::string_view) {}};
    const Observing here{who};
    try {
      (void)convertsources(preview.request.merge(),
                           [this](std::size_t source, const Aside* system) { load(source, system); });
      end();
    } catch (const TextTooLong&) {
      return parts == preview.parts.size();
    } catch (const Fatal&) {
    } catch (const Behind&) {
    }
    return false;
  }
};

bool endslikewise(const Preview& preview, const Originals& lines, std::size_t whole) {
  return Trial{.preview = preview, .lines = lines, .whole = whole}.endslikewise();
}

/// The number of the line to blame: as many whole lines make no run end, and one more does. It has to be below the
/// number of lines.
std::size_t search(const Preview& preview, const Originals& lines, std::size_t suspected) {
  std::size_t fine = 0;
  std::size_t toomany = lines.long_.size();
  if (suspected < toomany) {
    if (suspected > 0) (endslikewise(preview, lines, suspected) ? toomany : fine) = suspected;
    if (fine == suspected && suspected + 1 < toomany) {
      (endslikewise(preview, lines, suspected + 1) ? toomany : fine) = suspected + 1;
    }
  }
  while (toomany - fine > 1) {
    const std::size_t middle = fine + (toomany - fine) / 2;
    (endslikewise(preview, lines, middle) ? toomany : fine) = middle;
  }
  return fine;
}

/// The line of a file in which a line of the source's contents stands, and its section.
LongLine named(const Preview& preview, const Originals& lines, const Candidate& line) {
  const std::string_view contents = lines.contents[line.source];
  const std::string_view text = contents.substr(line.place, line.length);
  std::size_t place = 0;
  std::string_view section;
  for (std::size_t begin = 0; begin <= line.place;) {
    const std::string_view above = contents.substr(begin, contents.find('\n', begin) - begin);
    if (above.starts_with('[')) section = above;
    if (!above.empty() && begin < line.place) ++place;
    begin += above.size() + 1;
  }
  return {line.source, linenumbers(preview.sources[line.source].bytes)[place], std::string(section),
          std::string(text.substr(0, text.find('='))), line.length};
}

}  // namespace

std::optional<LongLine> culprit(const Preview& preview) {
  const Originals lines = linesof(preview);
  if (lines.long_.empty()) return {};
  Trial first{.preview = preview, .lines = lines, .whole = 0, .marked = true};
  if (first.endslikewise()) return {};
  return named(preview, lines, lines.long_[search(preview, lines, first.suspected)]);
}

}  // namespace tolvane
