#include "preview/preview.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "document/bytes.h"
#include "document/descriptor.h"
#include "document/ends.h"
#include "document/entries.h"
#include "document/forget.h"
#include "document/observer.h"
#include "document/room.h"
#include "ladder/ladder.h"
#include "ladder/platformrecord.h"
#include "legacy/convertnetwork.h"
#include "legacy/convertpair.h"
#include "legacy/convertsystem.h"
#include "preview/conversion.h"
#include "preview/culprit.h"
#include "preview/plan.h"
#include "preview/snapshot.h"

namespace tolvane {

namespace {

/// The conversion that is observed.
struct Run {
  Preview& preview;
  Watch watch = {};               // on the lines, as they were before the part that runs
  const Aside* system = nullptr;  // the system file's lines while they are aside
};

std::vector<Source> sourcesof(const Request& request) {
  std::vector<Source> sources(request.merge() ? 2 : 1);
  sources[0].path = request.path;
  if (request.merge()) sources[1].path = request.networkpath;
  return sources;
}

/// Gives the last part the changes since it began.
void endpart(Run& run) {
  Preview& preview = run.preview;
  if (preview.request.detail != Detail::parts) return;
  const std::optional<Snapshot> before = run.watch.look(run.system, preview.words);
  if (!before || preview.parts.empty()) return;
  std::vector<Change>& changes = preview.parts.back().changes;
  const std::vector<Change> more = compare(*before, run.watch.lines(), preview.words);
  changes.insert(changes.end(), more.begin(), more.end());
}

/// Reads a file once, so that it may be a pipe. Ends as a run does that cannot read it.
void read(Source& source) {
  const char* const path = source.path.c_str();
  const Descriptor file{open(path, O_RDONLY | O_CLOEXEC)};
  if (!file.isopen()) source.openerror = errno;
  checkopen(source.openerror, path);
  source.readerror = readall(file.number(), source.bytes, largestsource);
  if (source.bytes.size() > largestsource) source.readerror = EFBIG;
  checkread(source.readerror, path);
}

/// Fills the line store with a source and describes it.
void loadsource(Run& run, std::size_t number, const Aside* system) {
  run.system = system;
  endpart(run);
  Preview& preview = run.preview;
  Source& source = preview.sources[number];
  read(source);
  takeroom(source.bytes);
  source.reading = parse(source.bytes);
  source.loaded = true;
  source.version = preview.request.merge() ? legacyversion() : getvalue("[ConfigFile]", "Version");
  source.platform = platformname();
  source.family = platformfamily();
  if (preview.request.detail == Detail::contents) return;
  source.lines = parsedlines(source.bytes, preview.words);
  Snapshot lines = run.watch.lines();
  lines.insert(lines.end(), source.lines.begin(), source.lines.end());
  run.watch.set(std::move(lines));
}

/// Tells a run what its conversion does.
Observer observerof(Run& run) {
  const auto part = [&run](std::string_view ladder, std::string_view version, std::string_view phrase) {
    endpart(run);
    run.preview.parts.push_back({ladder, version, phrase, {}});
  };
  return {part, [&run](std::string_view text) { run.preview.messages += text; }};
}

/// The lines of all sources.
Snapshot sourcelines(const Preview& preview) {
  Snapshot lines;
  for (const Source& source : preview.sources) lines.insert(lines.end(), source.lines.begin(), source.lines.end());
  return lines;
}

/// The result is in the line store.
void takeresult(Run& run, std::string_view suffix) {
  Preview& preview = run.preview;
  if (!preview.request.merge()) planbackup(preview, suffix);
  if (preview.lost || preview.trouble) return;
  preview.outcome = Outcome::changed;
  if (preview.request.detail == Detail::contents) {
    preview.result = contents();
    return;
  }
  if (preview.request.detail == Detail::account) run.watch.look(nullptr, preview.words);
  const Snapshot before = sourcelines(preview);
  const Snapshot& after = run.watch.lines();
  preview.after = after.size();
  preview.account = count(before.size(), compare(before, after, preview.words));
}

/// The source that is too large to be previewed, if one is.
const Source* toolarge(const Preview& preview) {
  const auto found = std::find_if(preview.sources.begin(), preview.sources.end(),
                                  [](const Source& source) { return source.readerror == EFBIG; });
  return found == preview.sources.end() ? nullptr : &*found;
}

void endfatally(Preview& preview, const std::string& message) {
  if (const Source* const source = toolarge(preview)) {
    const std::string limit = std::to_string(largestsource >> 20) + " MiB";
    preview.trouble = {.message = source->path + " has more than " + limit + " and is not previewed.", .unread = true};
    return;
  }
  preview.messages += message + '\n';
  preview.trouble = {.message = message, .inpart = !preview.parts.empty()};
  for (const Source& source : preview.sources) {
    const int error = source.openerror != 0 ? source.openerror : source.readerror;
    if (error != 0) preview.trouble->message += std::string(" (") + std::strerror(error) + ')';
  }
}

/// Converts in memory. True unless a text is too long.
bool converted(Preview& preview) {
  Run run{preview};
  const Observer who = observerof(run);
  const Observing here{who};
  try {
    const auto load = [&run](std::size_t source, const Aside* system) { loadsource(run, source, system); };
    const std::optional<Text> suffix = convertsources(preview.request.merge(), load);
    run.system = nullptr;
    preview.outcome = Outcome::unchanged;
    if (!suffix) return true;
    endpart(run);
    takeresult(run, *suffix);
  } catch (const Fatal& end) {
    endfatally(preview, end.message);
  } catch (const TextTooLong&) {
    return false;
  }
  return true;
}

/// None as long as not all of the sources are read.
std::size_t pendingsteps(const std::vector<Source>& sources) {
  if (!sources.back().loaded) return 0;
  const std::size_t steps = pending(ladder, sources[0].version);
  if (sources.size() == 1) return steps;
  return steps + pending(systemladder, sources[0].version) + pending(networkladder, sources[1].version);
}

/// Only a file that would change has an account, and parts with changes.
void conclude(Preview& preview) {
  preview.pending = pendingsteps(preview.sources);
  for (const Source& source : preview.sources) preview.before += source.reading.lines;
  if (preview.trouble) preview.outcome = Outcome::trouble;
  if (preview.outcome == Outcome::changed) return;
  preview.after = preview.account.kept = preview.before;
  if (preview.outcome == Outcome::trouble) return;
  for (Part& part : preview.parts) part.changes.clear();
}

}  // namespace

std::vector<std::string_view> Preview::messagelines() const {
  std::vector<std::string_view> lines;
  std::string_view rest = messages;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    if (end > 0) lines.push_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return lines;
}

Preview previewof(const Request& request) {
  Preview preview;
  preview.request = request;
  preview.sources = sourcesof(request);
  if (!converted(preview)) {
    preview.trouble = {.message = "A line would grow beyond 511 characters",
                       .inpart = true,
                       .toolong = true,
                       .line = culprit(preview)};
  }
  forget();
  conclude(preview);
  return preview;
}

}  // namespace tolvane
