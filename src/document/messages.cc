#include "document/messages.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "document/visible.h"

namespace tolvane {

namespace {

/// Escapes every control character but newlines.
std::string visiblelines(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    result += visible(text.substr(0, end));
    if (end < text.size()) result += '\n';
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result;
}

bool onterminal() {
  static const bool terminal = isatty(STDOUT_FILENO) == 1;
  return terminal;
}

void print(std::string_view text) { (void)std::fwrite(text.data(), 1, text.size(), stdout); }

}  // namespace

void say(std::string_view text) { onterminal() ? print(visiblelines(text)) : print(text); }

void sayline(std::string_view text) {
  onterminal() ? print(visible(text)) : print(text);
  print("\n");
}

void complain(std::initializer_list<std::string_view> pieces) {
  std::string line = "tolvane: ";
  for (const std::string_view piece : pieces) line += piece;
  if (isatty(STDERR_FILENO) == 1) line = visible(line);
  line += '\n';
  // One call, so that the lines of concurrent runs do not mix. An error cannot be reported.
  pollfd writable{STDERR_FILENO, POLLOUT, 0};
  if (poll(&writable, 1, 1000) != 1) return;
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace tolvane
