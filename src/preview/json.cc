// The preview as JSON.
#include "preview/escape.h"
#include "preview/forms.h"

namespace tolvane {

namespace {

/// An object that grows by one member at a time.
class Object {
 public:
  /// Adds a member whose value is JSON already.
  Object& with(std::string_view name, std::string_view value) {
    text_.append(text_.size() > 1 ? ",\"" : "\"").append(name).append("\":").append(value);
    return *this;
  }
  [[nodiscard]] std::string text() const { return text_ + '}'; }

 private:
  std::string text_ = "{";
};

/// The items as JSON.
template <typename Items, typename Write>
std::string array(const Items& items, Write write) {
  std::string text = "[";
  for (const auto& item : items) text.append(text.size() > 1 ? "," : "").append(write(item));
  return text + ']';
}

std::string boolean(bool value) { return value ? "true" : "false"; }
std::string quotedornull(std::string_view text) { return text.empty() ? "null" : quoted(text); }

std::string file(const Source& source) {
  const auto known = [&](const std::string& text) { return source.loaded ? quoted(text) : "null"; };
  return Object()
      .with("path", quoted(source.path))
      .with("version", known(source.version))
      .with("platform", known(source.platform))
      .with("family", known(source.family))
      .with("blank", std::to_string(source.reading.blank))
      .with("split", std::to_string(source.reading.split))
      .with("cut", std::to_string(source.reading.cut))
      .text();
}

std::string_view kindof(const Change& change) {
  if (change.added()) return "added";
  if (change.removed()) return "removed";
  return change.moved() ? "moved" : "changed";
}

std::string change(const Change& change, const Vocabulary& words) {
  const Entry& entry = change.removed() ? *change.before : *change.after;
  Object result;
  result.with("kind", quoted(kindof(change)))
      .with("section", quotedornull(words.text(entry.section)))
      .with("line", quoted(words.text(entry.text)));
  if (change.changed()) result.with("old", quoted(words.text(change.before->text)));
  if (change.moved()) result.with("from", quotedornull(words.text(change.before->section)));
  return result.text();
}

std::string part(const Part& part, const Vocabulary& words) {
  return Object()
      .with("ladder", quotedornull(part.ladder))
      .with("version", quotedornull(part.version))
      .with("phrase", quoted(part.phrase))
      .with("changes", array(part.changes, [&](const Change& item) { return change(item, words); }))
      .text();
}

std::string backup(const std::optional<Backup>& backup) {
  if (!backup) return "null";
  return Object()
      .with("name", quoted(backup->name))
      .with("replaces", boolean(backup->replaces))
      .with("link", boolean(backup->link))
      .with("obstacle", quotedornull(backup->obstacle))
      .text();
}

std::string lines(const Preview& preview) {
  const Account& account = preview.account;
  return Object()
      .with("before", std::to_string(preview.before))
      .with("after", std::to_string(preview.after))
      .with("kept", std::to_string(account.kept))
      .with("changed", std::to_string(account.changed))
      .with("moved", std::to_string(account.moved))
      .with("removed", std::to_string(account.removed))
      .with("added", std::to_string(account.added))
      .text();
}

std::string longline(const Preview& preview) {
  if (!preview.trouble->line) return "null";
  const LongLine& line = *preview.trouble->line;
  return Object()
      .with("path", quoted(preview.sources[line.source].path))
      .with("number", std::to_string(line.number))
      .with("section", quotedornull(line.section))
      .with("key", quoted(line.key))
      .with("length", std::to_string(line.length))
      .text();
}

std::string trouble(const Preview& preview) {
  if (!preview.trouble) return "null";
  const Part nowhere{};
  const Part& part = preview.trouble->inpart ? preview.parts.back() : nowhere;
  return Object()
      .with("message", quoted(preview.trouble->message))
      .with("version", quotedornull(part.version))
      .with("phrase", quotedornull(part.phrase))
      .with("line", longline(preview))
      .text();
}

std::string_view outcome(Outcome outcome) {
  if (outcome == Outcome::trouble) return "trouble";
  return outcome == Outcome::changed ? "changed" : "unchanged";
}

}  // namespace

std::string json(const Preview& preview) {
  const Object whole =
      Object()
          .with("command", quoted(preview.request.merge() ? "merge" : "update"))
          .with("files", array(preview.sources, file))
          .with("outcome", quoted(outcome(preview.outcome)))
          .with("pending", std::to_string(preview.pending))
          .with("parts", array(preview.parts, [&](const Part& item) { return part(item, preview.words); }))
          .with("messages", array(preview.messagelines(), quoted))
          .with("backup", backup(preview.backup))
          .with("lines", lines(preview))
          .with("trouble", trouble(preview));
  return whole.text() + '\n';
}

}  // namespace tolvane
