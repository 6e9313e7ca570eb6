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
  /// The object so far, for more members.
  [[nodiscard]] const std::string& open() const { return text_; }

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

std::string_view quotedkind(const Change& change) {
  constexpr std::string_view kinds[] = {R"("changed")", R"("moved")", R"("removed")", R"("added")"};
  return kinds[static_cast<std::size_t>(change.kind)];
}

/// Appends a change. There can be as many as lines: no text is built for one alone.
void appendchange(std::string& output, const Change& change, const Vocabulary& words) {
  const auto append = [&](std::string_view member, std::string_view text) {
    appendquoted(output.append(member), text);
  };
  const auto appendsection = [&](std::string_view member, std::uint32_t line) {
    const std::string_view header = words.text(words.section(line));
    header.empty() ? void(output.append(member).append("null")) : append(member, header);
  };
  output.append("{\"kind\":").append(quotedkind(change));
  appendsection(",\"section\":", change.line());
  append(",\"line\":", words.text(change.line()));
  if (change.kind == Change::Kind::changed) append(",\"old\":", words.text(change.before));
  if (change.kind == Change::Kind::moved) appendsection(",\"from\":", change.before);
  output += '}';
}

void appendpart(std::string& output, const Part& part, const Vocabulary& words) {
  Object head;
  head.with("ladder", quotedornull(part.ladder))
      .with("version", quotedornull(part.version))
      .with("phrase", quoted(part.phrase));
  output.append(head.open()).append(",\"changes\":[");
  const char* comma = "";
  for (const Change& change : part.changes) {
    appendchange(output.append(comma), change, words);
    comma = ",";
  }
  output += "]}";
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
  Object head;
  head.with("command", quoted(preview.request.merge() ? "merge" : "update"))
      .with("files", array(preview.sources, file))
      .with("outcome", quoted(outcome(preview.outcome)))
      .with("pending", std::to_string(preview.pending));
  std::string text = head.open() + ",\"parts\":[";
  const char* comma = "";
  for (const Part& part : preview.parts) {
    appendpart(text.append(comma), part, preview.words);
    comma = ",";
  }
  Object tail;
  tail.with("messages", array(preview.messagelines(), quoted))
      .with("backup", backup(preview.backup))
      .with("lines", lines(preview))
      .with("trouble", trouble(preview));
  return text.append("],").append(tail.text().substr(1)).append(1, '\n');
}

}  // namespace tolvane
