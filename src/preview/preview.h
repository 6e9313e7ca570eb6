// What `update` and `merge` would do, found out by letting them convert in memory.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "document/parse.h"
#include "preview/account.h"

namespace tolvane {

/// What is told of a conversion that changes something: the account of the lines, that and the changes of each part, or
/// only the contents that would be written.
enum class Detail { account, parts, contents };

/// What is asked for: the file of an update, or the system and the network file of a merge.
struct Request {
  const char* path = nullptr;
  const char* networkpath = nullptr;  // none for an update
  Detail detail = Detail::parts;

  [[nodiscard]] bool merge() const { return networkpath != nullptr; }
};

/// The most bytes that are previewed: what is larger is no parameter file, and has the read error EFBIG. So many bytes
/// in 2.6 million lines take 1.9 GB and 8 s.
inline constexpr std::size_t largestsource = 64 << 20;

/// A file that is read, and what it says of itself.
struct Source {
  std::string path;
  std::string bytes;
  int openerror = 0;  // error numbers of opening and reading it, 0 for none
  int readerror = 0;
  Reading reading;
  Snapshot lines;  // as they were read; empty if only the contents are asked for
  bool loaded = false;
  std::string version;
  std::string platform;
  std::string family;
};

/// A part of the conversion: a step of a ladder, or what is done besides them, which has no version.
struct Part {
  std::string_view ladder;  // "system" or "network" of a merge, else "main"; none without a version
  std::string_view version;
  std::string_view phrase;
  std::vector<Change> changes;
};

/// A line of a source that makes the conversion end because it would grow too long.
struct LongLine {
  std::size_t source;  // by its place
  std::size_t number;  // of the line in its file
  std::string section;
  std::string key;
  std::size_t length;
};

/// What would end the run.
struct Trouble {
  std::string message;
  bool inpart = false;   // it happens in the last part
  bool toolong = false;  // it is a line that would grow too long
  bool unread = false;   // the preview itself gives up, and what the run would do is not known
  std::optional<LongLine> line = {};
};

/// The backup that an update would leave.
struct Backup {
  std::string name;
  bool replaces = false;  // there is something of that name
  bool link = false;      // the file is a symbolic link, which would itself be the backup
  std::string obstacle;   // why there would be none after all, else empty
};

/// What would become of the files.
enum class Outcome { unchanged, changed, trouble };

struct Preview {
  Request request;
  std::vector<Source> sources;
  std::size_t pending = 0;  // steps from the versions of the sources to the current one
  std::vector<Part> parts;  // as far as the conversion comes
  Vocabulary words;
  Outcome outcome = Outcome::trouble;
  std::size_t before = 0;  // lines as they are read, without blank ones
  std::size_t after = 0;   // the same unless the outcome is `changed`
  Account account;         // from the files to the result
  std::string result;      // the contents that would be written, when the outcome is `changed` and they are asked for
  std::string messages;    // that would be printed
  std::optional<Backup> backup;
  std::optional<Trouble> trouble;
  bool lost = false;  // the backup would have the name of the temporary file, and the result be lost

  /// The lines of the messages that are not empty.
  [[nodiscard]] std::vector<std::string_view> messagelines() const;
};

/// Converts in memory and reports. Throws nothing but std::bad_alloc. One file after the other: it fills the line store
/// and empties it again. The parts of a conversion that would not be written have no changes.
Preview previewof(const Request& request);

}  // namespace tolvane
