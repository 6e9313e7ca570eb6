// The preview in words.
#include "document/versions.h"
#include "document/visible.h"
#include "ladder/convertconfig.h"
#include "preview/escape.h"
#include "preview/forms.h"

namespace tolvane {

namespace {

// The colours of a terminal.
constexpr std::string_view plain = "\033[0m";
constexpr std::string_view bold = "\033[1m";
constexpr std::string_view red = "\033[31m";
constexpr std::string_view green = "\033[32m";
constexpr std::string_view yellow = "\033[33m";
constexpr std::string_view cyan = "\033[36m";

/// What is written so far, and how.
struct Page {
  bool color;
  std::string text;

  void line(std::string_view content) { text.append(content).append(1, '\n'); }
  void line(std::string_view hue, const std::string& content) {
    if (color && !hue.empty()) {
      text.append(hue).append(content).append(plain).append(1, '\n');
    } else {
      line(content);
    }
  }
};

std::string sourcetext(const Source& source) {
  std::string text = visible(source.path) + ": " + versiontext(source);
  if (source.platform.empty()) return text + ", no platform";
  text += ", platform " + visible(source.platform);
  return source.family.empty() ? text : text + " (" + visible(source.family) + ')';
}

std::string_view command(const Preview& preview) { return preview.request.merge() ? "merge" : "update"; }

std::string heading(const Part& part) {
  return (part.version.empty() ? std::string() : std::string(part.version) + "  ").append(part.phrase);
}

std::string sectiontext(std::uint32_t section, const Vocabulary& words) {
  const std::string_view header = words.text(section);
  return header.empty() ? "(before the first section)" : visible(header);
}

/// Appends a line of the document behind a word. There can be as many as lines: no text is built for one alone.
void writeline(std::string_view hue, std::string_view word, std::string_view line, Page& page) {
  const bool colored = page.color && !hue.empty();
  if (colored) page.text += hue;
  appendvisible(page.text.append(word), line);
  if (colored) page.text += plain;
  page.text += '\n';
}

void writechange(const Change& change, const Vocabulary& words, Page& page) {
  const std::string_view before = words.text(change.kind == Change::Kind::added ? change.after : change.before);
  if (change.kind == Change::Kind::added) {
    writeline(green, "    added    ", before, page);
  } else if (change.kind == Change::Kind::removed) {
    writeline(red, "    removed  ", before, page);
  } else if (change.kind == Change::Kind::moved) {
    const std::uint32_t from = words.section(change.before);
    const bool within = from == words.section(change.after);
    writeline(cyan, "    moved    ", before, page);
    page.line(cyan, "       from  " + (within ? "elsewhere in this section" : sectiontext(from, words)));
  } else {
    writeline(yellow, "    changed  ", before, page);
    writeline(yellow, "         to  ", words.text(change.after), page);
  }
}

/// The changes of a part, under their sections.
void writechanges(const Part& part, const Vocabulary& words, Page& page) {
  std::optional<std::uint32_t> before;
  for (const Change& change : part.changes) {
    const std::uint32_t section = words.section(change.line());
    if (before != section) page.line("  " + sectiontext(section, words));
    before = section;
    writechange(change, words, page);
  }
}

/// Which file a ladder of a merge is for.
std::string laddertext(const Preview& preview, std::string_view ladder) {
  if (ladder == "system") return visible(preview.sources[0].path) + ", the system file:";
  if (ladder == "network") return visible(preview.sources[1].path) + ", the network file:";
  return "Both files together:";
}

/// True for the part in which the conversion would end.
bool ends(const Preview& preview, const Part& part) {
  return preview.trouble && preview.trouble->inpart && &part == &preview.parts.back();
}

void writepart(const Preview& preview, const Part& part, Page& page) {
  page.line("");
  page.line(bold, heading(part));
  writechanges(part, preview.words, page);
  if (ends(preview, part)) {
    page.line(red, "    " + std::string(command(preview)) + " would end here: " + troubletext(preview));
  }
}

void writeparts(const Preview& preview, Page& page) {
  std::string_view ladder = preview.request.merge() ? "" : "main";
  bool idle = false;  // the part before is one line
  for (const Part& part : preview.parts) {
    if (!part.version.empty() && part.ladder != ladder) {
      ladder = part.ladder;
      page.line("");
      page.line(bold, laddertext(preview, ladder));
      idle = false;
    }
    const bool moves = !part.changes.empty() || ends(preview, part);
    if (moves) {
      writepart(preview, part, page);
    } else {
      if (!idle) page.line("");
      page.line(heading(part) + ": nothing changes");
    }
    idle = !moves;
  }
}

void writemessages(const Preview& preview, Page& page) {
  if (preview.messages.empty()) return;
  page.line("");
  page.line(bold, "Messages that " + std::string(command(preview)) + " would print");
  for (const std::string_view line : preview.messagelines()) page.line("  " + visible(line));
}

std::string backuptext(const Backup& backup) {
  if (!backup.obstacle.empty())
    return "The old file would not be kept as " + visible(backup.name) + ": " + backup.obstacle + '.';
  const std::string text = "The old file would be kept as " + visible(backup.name);
  return text + (backup.replaces ? ", in place of the older one that is there." : ".");
}

constexpr std::string_view linktext =
    "The old file is a symbolic link: the link itself would go, and what it points to stay as it is.";

std::string whynothing(const Preview& preview) {
  const Source& source = preview.sources[0];
  if (preview.lost)
    return "update would leave the file as it is: the backup would have the name of the temporary file.";
  if (source.version == currentversion) return "update would write nothing: the file is current.";
  return "update would write nothing: the version is not known.";
}

std::string whatever(const Preview& preview) {
  if (preview.trouble && preview.trouble->unread) return troubletext(preview);
  if (preview.trouble) return std::string(command(preview)) + " would write nothing. " + troubletext(preview);
  if (preview.outcome == Outcome::unchanged) return whynothing(preview);
  if (preview.request.merge())
    return "merge would write the result to its FILE, and keep no backup of one that is there.";
  const std::string text =
      "update would write " + visible(preview.sources[0].path) + " in version " + std::string(currentversion);
  if (isunknown(preview)) return text + ", though its version is not known and it passes no step.";
  return text + (passesgate(preview.sources[0].version) ? "." : ", though it passes no step.");
}

void writeaccount(const Preview& preview, Page& page) {
  const Account& account = preview.account;
  const std::string common = std::to_string(account.kept) + " kept + " + std::to_string(account.changed) +
                             " changed + " + std::to_string(account.moved) + " moved + ";
  page.line("  Lines before: " + std::to_string(preview.before) + " = " + common + std::to_string(account.removed) +
            " removed");
  page.line("  Lines after:  " + std::to_string(preview.after) + " = " + common + std::to_string(account.added) +
            " added");
  std::size_t blank = 0;
  std::size_t split = 0;
  std::size_t cut = 0;
  for (const Source& source : preview.sources) {
    blank += source.reading.blank;
    split += source.reading.split;
    cut += source.reading.cut;
  }
  if (preview.outcome == Outcome::unchanged) return;
  page.line("  Blank lines dropped: " + std::to_string(blank) + "; lines split at 511 characters: " +
            std::to_string(split) + (cut == 0 ? "" : "; lines cut at a NUL byte: " + std::to_string(cut)));
}

void writeresult(const Preview& preview, Page& page) {
  page.line("");
  page.line(bold, "Result");
  page.line(preview.trouble ? red : std::string_view{}, "  " + whatever(preview));
  if (preview.outcome == Outcome::trouble) return;
  if (preview.backup) page.line("  " + backuptext(*preview.backup));
  if (preview.backup && preview.backup->link) page.line(yellow, "  " + std::string(linktext));
  writeaccount(preview, page);
}

}  // namespace

std::string report(const Preview& preview, bool color) {
  Page page{color, {}};
  for (const Source& source : preview.sources) {
    if (source.loaded) page.line(bold, sourcetext(source));
  }
  if (!preview.sources[0].loaded) page.line(bold, visible(preview.sources[0].path));
  if (preview.sources.back().loaded)
    page.line("  " + counted(preview.pending, "step") + " to version " + std::string(currentversion));
  writeparts(preview, page);
  writemessages(preview, page);
  writeresult(preview, page);
  return page.text;
}

}  // namespace tolvane
