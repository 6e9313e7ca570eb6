// The program's entry: picks the command by the number of words and the command word, and turns the ends of a run into
// output and exit status. A command that ran returns 1; the usage text and every fatal end return 0, on purpose.
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string_view>

#include "commands/fdbms.h"
#include "commands/setparameter.h"
#include "commands/update.h"
#include "document/ends.h"

namespace {

using tolvane::fdbms;
using tolvane::setparameter;
using tolvane::update;

/// A command: how many words its line has, the program's name among them, and what runs it with the words behind it.
struct Command {
  int words;
  std::string_view word;
  int (*run)(const char* const* arguments);
};

constexpr Command commands[] = {
    {3, "update", [](const char* const* arguments) { return update(arguments[0]); }},
    {3, "fdbms", [](const char* const* arguments) { return fdbms(arguments[0]); }},
    {3, "install", [](const char* const*) { return 1; }},  // accepts its file and does nothing, on purpose
    {6, "setparameter",
     [](const char* const* arguments) { return setparameter(arguments[0], arguments[1], arguments[2], arguments[3]); }},
};

/// Returns the exit status 0. Kept: `setparameter` is not mentioned.
int usage() {
  std::puts("Syntax: tolvane update  <filename.qpx>");
  std::puts("        tolvane merge   <filename.qpx> <config.def> <network.def>");
  std::puts("        tolvane fdbms   <filename.qpx>");
  std::puts("        tolvane install <filename.qpx>");
  return 0;
}

int dispatch(int words, const char* const* line) {
  for (const Command& command : commands) {
    if (words == command.words && line[1] == command.word) return command.run(line + 2);
  }
  return usage();
}

int fatal(const char* message) {
  std::puts(message);
  return 0;
}

}  // namespace

int main(int words, char** line) {
  try {
    return dispatch(words, line);
  } catch (const tolvane::Fatal& end) {
    return fatal(end.message.c_str());
  } catch (const std::bad_alloc&) {
    return fatal("Insufficient memory");
  } catch (const tolvane::TextTooLong&) {
    std::abort();
  }
}
