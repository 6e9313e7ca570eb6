#include "preview/preview.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "commands/update.h"
#include "document/ends.h"
#include "document/entries.h"
#include "document/replace.h"
#include "document/watch.h"
#include "ladder/ladder.h"
#include "ladder/platformrecord.h"
#include "legacy/convertnetwork.h"
#include "legacy/convertsystem.h"
#include "legacy/merge.h"
#include "preview/culprit.h"
#include "preview/lines.h"

namespace tolvane {

namespace {

/// What is watched: the preview that is being made, and the lines before the part that runs.
struct Watched {
  Preview* preview;
  Snapshot before;
  std::size_t opened = 0;
};

Watched* watched = nullptr;

/// Gives the last part the changes since it began.
void endpart() {
  Preview& preview = *watched->preview;
  Snapshot now = snapshot(preview.words);
  if (!preview.parts.empty() && now != watched->before) {
    std::vector<Change>& changes = preview.parts.back().changes;
    std::vector<Change> more = compare(watched->before, now, preview.words);
    changes.insert(changes.end(), more.begin(), more.end());
  }
  watched->before = std::move(now);
}

Source& currentsource() { return watched->preview->sources[watched->opened - 1]; }

std::FILE* opensource(const char* path) {
  endpart();
  ++watched->opened;
  Source& source = currentsource();
  source.input = readinput(path);
  source.reading = readingof(source.input.bytes);
  return serve(source.input);
}

void describesource() {
  Source& source = currentsource();
  source.loaded = true;
  source.version = watched->preview->request.merge() ? legacyversion() : getvalue("[ConfigFile]", "Version");
  source.platform = platformname();
  source.family = platformfamily();
  watched->before = snapshot(watched->preview->words);
}

/// The ladder that a step belongs to.
std::string_view ladderof(std::string_view version) {
  if (version.empty()) return {};
  if (!watched->preview->request.merge()) return "main";
  if (watched->opened == 1) return "system";
  return systemstart != nullptr ? "network" : "main";
}

void beginpart(std::string_view version, std::string_view phrase) {
  endpart();
  watched->preview->parts.push_back({ladderof(version), version, phrase, {}});
}

constexpr Watch watching{
    opensource,
    describesource,
    beginpart,
    [](std::string_view text) { watched->preview->messages += text; },
};

/// Watches a conversion as long as it lives, and leaves no line in memory.
class Watching {
 public:
  explicit Watching(Preview& preview) : state_{&preview, {}} {
    watched = &state_;
    watch = watching;
  }
  ~Watching() {
    watch = nobody;
    watched = nullptr;
  }
  Watching(const Watching&) = delete;
  Watching& operator=(const Watching&) = delete;

 private:
  Forgetting afterwards_;
  Watched state_;
};

/// Converts in memory. False when nothing would be written.
bool convertfor(const Request& request, Text& backupsuffix) {
  if (!request.merge()) return convert(request.path, backupsuffix);
  convertpair(request.path, request.networkpath, [](const char* path) { load(path); });
  return true;
}

void convertagain(const Request& request) {
  Text suffix;
  (void)convertfor(request, suffix);
}

std::vector<Source> sourcesof(const Request& request) {
  std::vector<Source> sources(request.merge() ? 2 : 1);
  sources[0].path = request.path;
  if (request.merge()) sources[1].path = request.networkpath;
  return sources;
}

/// All lines as they were read.
Snapshot read(const std::vector<Source>& sources, Vocabulary& words) {
  Snapshot lines;
  for (const Source& source : sources) {
    std::uint32_t section = words.number("");
    for (const Loaded& line : source.reading.lines) {
      lines.push_back(entryof(line.text, section, words));
      section = lines.back().section;
    }
  }
  return lines;
}

/// What stands under a name, links not followed; none when nothing does, and why in errno.
std::optional<mode_t> kindof(const char* path) {
  struct stat status = {};
  if (lstat(path, &status) != 0) return {};
  return status.st_mode & S_IFMT;
}

Backup backupunder(const Text& name, bool link) {
  Backup backup{std::string(name), false, link, {}};
  const std::optional<mode_t> kind = kindof(name.c_str());
  backup.replaces = kind.has_value();
  std::error_code error;
  if (kind == S_IFDIR && !std::filesystem::is_empty(backup.name, error)) {
    backup.obstacle = "a folder that is not empty has this name";
  } else if (!kind && errno == ENAMETOOLONG) {
    backup.obstacle = "this name is too long for the file system";
  }
  return backup;
}

/// Why the temporary file could not be made; nothing when it could, as far as its name tells.
std::string obstacle(const Text& temporary) {
  const std::optional<mode_t> kind = kindof(temporary.c_str());
  if (kind && kind != S_IFREG) return "it is there and no plain file";
  return !kind && errno == ENAMETOOLONG ? std::strerror(errno) : std::string();
}

/// Plans what an update does with its result.
void planbackup(Preview& preview, const Text& suffix) {
  const Text temporary = temporaryname(preview.request.path);
  const Text name = backupname(preview.request.path, suffix);
  const std::string why = obstacle(temporary);
  preview.lost = why.empty() && name == temporary;
  if (!why.empty()) {
    const std::string message = cannotopen(temporary.c_str()).message;
    preview.messages += message + '\n';
    preview.trouble = {.message = message + " (" + why + ')'};
  } else if (!preview.lost) {
    preview.backup = backupunder(name, kindof(preview.request.path) == S_IFLNK);
  }
}

/// The result is in the line store.
void takeresult(Preview& preview, const Text& suffix) {
  endpart();
  if (!preview.request.merge()) {
    try {
      planbackup(preview, suffix);
    } catch (const TextTooLong&) {
      preview.trouble = {.message =
                             "The name of the temporary file or of the backup would be longer than 511 characters."};
    }
  }
  if (preview.lost || preview.trouble) return;
  preview.outcome = Outcome::changed;
  preview.result = contents();
  const Snapshot then = read(preview.sources, preview.words);
  const Snapshot now = snapshot(preview.words);
  preview.after = now.size();
  preview.account = count(then.size(), compare(then, now, preview.words));
}

/// Why a source cannot be read; nothing when that is not the trouble.
std::string reason(const Source& source) {
  const int error = source.input.openerror != 0 ? source.input.openerror : source.input.readerror;
  return error == 0 ? std::string() : std::string(" (") + std::strerror(error) + ')';
}

/// The source that is too large to be previewed, if one is.
const Source* toolarge(const Preview& preview) {
  const auto found = std::find_if(preview.sources.begin(), preview.sources.end(),
                                  [](const Source& source) { return source.input.readerror == EFBIG; });
  return found == preview.sources.end() ? nullptr : &*found;
}

void endfatally(Preview& preview, const std::string& message) {
  if (const Source* const source = toolarge(preview)) {
    const std::string limit = std::to_string(largestinput >> 20) + " MiB";
    preview.trouble = {.message = source->path + " has more than " + limit + " and is not previewed.", .unread = true};
    return;
  }
  std::string why;
  for (const Source& source : preview.sources) why += reason(source);
  preview.messages += message + '\n';
  preview.trouble = {.message = message + why, .inpart = !preview.parts.empty()};
}

void endtoolong(Preview& preview) {
  std::optional<LongLine> line = culprit(preview, convertagain);
  preview.trouble = {
      .message = "A line would grow beyond 511 characters", .inpart = true, .toolong = true, .line = std::move(line)};
}

/// True unless a text is too long.
bool run(Preview& preview) {
  const Watching here{preview};
  try {
    Text suffix;
    const bool written = convertfor(preview.request, suffix);
    preview.outcome = Outcome::unchanged;
    if (written) takeresult(preview, suffix);
    return true;
  } catch (const Fatal& end) {
    endfatally(preview, end.message);
    return true;
  } catch (const TextTooLong&) {
    return false;
  }
}

/// None as long as not all of the sources are read.
std::size_t pendingsteps(const std::vector<Source>& sources) {
  if (!sources.back().loaded) return 0;
  const std::size_t steps = pending(ladder, sources[0].version);
  if (sources.size() == 1) return steps;
  return steps + pending(systemladder, sources[0].version) + pending(networkladder, sources[1].version);
}

/// Nothing but a change is an account of something.
void conclude(Preview& preview) {
  preview.pending = pendingsteps(preview.sources);
  for (const Source& source : preview.sources) preview.before += source.reading.lines.size();
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
  if (!run(preview)) endtoolong(preview);
  conclude(preview);
  return preview;
}

}  // namespace tolvane
