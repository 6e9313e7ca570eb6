// The program's entry: picks the command by the number of words and the command word, and turns the ends of a run into
// output and exit status. A text that is too long ends the run by an abort.
#include <fcntl.h>
#include <sys/epoll.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

#include "commands/commands.h"
#include "document/ends.h"
#include "document/messages.h"
#include "document/room.h"
#include "legacy/merge.h"

namespace {

/// The words of the command line behind the command word.
using Arguments = const char* const*;

int update(Arguments words) { return tolvane::update(words[0]); }
int fdbms(Arguments words) { return tolvane::fdbms(words[0]); }
int install(Arguments /*words*/) { return tolvane::ran; }  // kept: accepts its file and does nothing
int merge(Arguments words) { return tolvane::merge(words[0], words[1], words[2]); }
int setparameter(Arguments words) { return tolvane::setparameter(words[0], words[1], words[2], words[3]); }

/// A command: how many words its command line has, the program's name among them, and what runs it.
struct Command {
  int words;
  std::string_view word;
  int (*run)(Arguments words);
};

constexpr Command commands[] = {
    {3, "update",       update      },
    {3, "fdbms",        fdbms       },
    {3, "install",      install     },
    {5, "merge",        merge       },
    {6, "setparameter", setparameter},
};

/// Kept: `setparameter` is not mentioned.
int usage() {
  std::puts("Syntax: tolvane update  <filename.qpx>");
  std::puts("        tolvane merge   <filename.qpx> <config.def> <network.def>");
  std::puts("        tolvane fdbms   <filename.qpx>");
  std::puts("        tolvane install <filename.qpx>");
  return tolvane::didnotrun;
}

int dispatch(int argc, Arguments argv) {
  for (const Command& command : commands) {
    if (argc == command.words && argv[1] == command.word) return command.run(argv + 2);
  }
  return usage();
}

int fatal(std::string_view message) {
  tolvane::sayline(message);
  return tolvane::didnotrun;
}

int outofmemory() {
  std::puts("Insufficient memory");
  return tolvane::didnotrun;
}

/// An exception that finds no memory for itself ends here, and is none that is active.
[[noreturn]] void terminate() {
  if (std::current_exception() != nullptr) std::abort();
  const int status = outofmemory();
  (void)std::fflush(stdout);
  std::_Exit(status);
}

/// Gives the numbers of standard streams that are closed to descriptors that cannot be read, written or opened again,
/// so that no file that is opened later gets what is printed.
void occupystreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) < 0) (void)epoll_create1(EPOLL_CLOEXEC);
  }
}

}  // namespace

int main(int argc, char** argv) {
  tolvane::keepmemory();
  (void)std::signal(SIGXFSZ, SIG_IGN);  // a file-size limit is a write that fails, not the end of the process
  std::set_terminate(terminate);
  occupystreams();
  try {
    return dispatch(argc, argv);
  } catch (const tolvane::Fatal& end) {
    return fatal(end.message);
  } catch (const std::bad_alloc&) {
    return outofmemory();
  } catch (const tolvane::TextTooLong&) {
    (void)std::fflush(stdout);  // an abort would lose the warnings that were printed before it
    std::abort();
  }
}
