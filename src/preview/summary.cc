// The preview in one line, and shared wording.
#include "document/versions.h"
#include "document/visible.h"
#include "preview/forms.h"

namespace tolvane {

namespace {

std::string inpart(const Part& part) {
  return part.version.empty() ? std::string(" in the part \"").append(part.phrase) + '"'
                              : std::string(" in step ").append(part.version) + " (" + std::string(part.phrase) + ')';
}

std::string linetext(const Preview& preview, const LongLine& line) {
  return "line " + std::to_string(line.number) + " of " + visible(preview.sources[line.source].path) + ", \"" +
         visible(line.key) + "\" in " + (line.section.empty() ? "no section" : visible(line.section)) + ", " +
         counted(line.length, "character") + " long";
}

std::string backupoutlook(const Backup& backup) {
  const std::string name = "backup " + visible(backup.name);
  if (!backup.obstacle.empty()) return "no " + name + " (" + backup.obstacle + ')';
  if (backup.link) return name + " (the symbolic link itself)";
  return name + (backup.replaces ? " (replaced)" : "");
}

/// What would happen, in few words.
std::string outlook(const Preview& preview) {
  if (preview.trouble) return (preview.trouble->unread ? "" : "would end: ") + troubletext(preview);
  const std::string warned = preview.messages.empty() ? "" : " with a warning";
  if (preview.outcome == Outcome::unchanged) return "would stay as it is" + (warned.empty() ? "" : ',' + warned);
  if (!preview.backup) return "would be built" + warned;
  const std::string done = isunknown(preview) ? "would be written without a step" : "would be upgraded";
  return done + warned + ", " + backupoutlook(*preview.backup);
}

}  // namespace

std::string counted(std::size_t value, const std::string& thing) {
  return std::to_string(value) + ' ' + thing + (value == 1 ? "" : "s");
}

std::string versiontext(const Source& source) {
  if (source.version.empty()) return "no version";
  if (source.version == currentversion) return "version " + source.version + " (current)";
  return "version " + visible(source.version) + (versionknown(source.version) ? "" : " (not known)");
}

bool isunknown(const Preview& preview) { return !preview.request.merge() && !versionknown(preview.sources[0].version); }

std::string troubletext(const Preview& preview) {
  const Trouble& trouble = *preview.trouble;
  if (!trouble.toolong) return visible(trouble.message);
  std::string text = trouble.message + inpart(preview.parts.back());
  return trouble.line ? text + ": " + linetext(preview, *trouble.line) : text;
}

std::string summary(const Preview& preview) {
  std::string text;
  for (const Source& source : preview.sources) {
    text += (text.empty() ? "" : " + ") + visible(source.path);
    if (source.loaded && preview.request.merge()) text += " (" + versiontext(source) + ')';
  }
  const Account& account = preview.account;
  if (!preview.request.merge() && preview.sources[0].loaded) text += ": " + versiontext(preview.sources[0]);
  if (preview.sources.back().loaded) {
    text += ", " + counted(preview.pending, "step") + " pending, " +
            counted(account.changed + account.moved + account.removed + account.added, "line") + " changed";
  }
  return text + ": " + outlook(preview) + '\n';
}

}  // namespace tolvane
